#include "app/main_window_controls.h"
#include "driver/program.h"
#include "driver/seed.h"
#include "driver/work.h"
#include "e2e/process.h"
#include "e2e/remote_tree.h"
#include "seeded.h"

#include <vector>

namespace bench {
namespace {

struct Tester {
    const char* name;
    std::string command_line;
    bool has_entries;
};

std::vector<Tester> testers(const Servers& servers) {
    const std::string folder = e2e::program_folder() + "\\";
    const std::string arguments =
        " " + servers.prefix + " " + std::to_string(servers.count) + " " + std::to_string(servers.port);
    return {
        {ours, folder + "tavrinconfig.exe", true},
        {bare, folder + "bench\\bare_tool.exe 0" + arguments, false},
        {prescribed, folder + "bench\\prescribed_calls.exe windows" + arguments, false},
        {prescribed_without_windows, folder + "bench\\prescribed_calls.exe no-windows" + arguments, false}};
}

double time_of(const Tester& tester) {
    Program tool(tester.command_line);
    if (tester.has_entries)
        e2e::RemoteTree(tool.control(tree_id), tool.process()).select({"Agent", "Servers", "Name"});
    return tool.click_for_box(test_connection_id, seeded::success_caption);
}

} // namespace

void measure_connection_test(Samples& samples, const char* work, int runs, const Servers& servers) {
    const Seed seed = Seed::of_connection_test(servers);
    for (int run = 0; run < runs; ++run) {
        for (const Tester& tester : testers(servers))
            samples.add(work, tester.name, "s", time_of(tester));
    }
}

} // namespace bench
