#include "driver/program.h"
#include "driver/seed.h"
#include "driver/work.h"
#include "e2e/process.h"
#include "seeded.h"

#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

constexpr char state_file[] = "bench_state.json";

/// From the start to the end, whatever it prints.
double time_of(const std::string& command_line) {
    const double begin = now();
    e2e::Process process(command_line);
    if (process.exit_code(120) != 0)
        throw std::runtime_error(command_line + " failed: " + process.output());
    return now() - begin;
}

void write_state(int entries) {
    std::ofstream file(state_file, std::ios::binary);
    file << R"({"schema":1,"configurations":{"Agent":{"values":{)";
    for (int i = 0; i < entries; ++i)
        file << (i == 0 ? "\"" : ",\"") << numbered(seeded::value_format, i) << "\":\""
             << numbered(seeded::text_format, i) << '"';
    file << "}}}}";
}

void measure_show(Samples& samples, const std::string& tavrinctl, int runs) {
    const Seed seed(50);
    const std::string query = std::string("reg query HKLM\\") + seeded::agent_key;
    for (int run = 0; run < runs; ++run) {
        samples.add("tavrinctl show, 50", ours, "s", time_of(tavrinctl + " show Agent"));
        samples.add("tavrinctl show, 50", "reg query", "s", time_of(query));
    }
}

void measure_apply(Samples& samples, const std::string& tavrinctl, int runs) {
    constexpr int entries = 1'000;
    const Seed seed(entries);
    write_state(entries);
    const std::string calls = e2e::program_folder() + "\\bench\\bare_values.exe " + std::to_string(entries);
    for (int run = 0; run < runs; ++run) {
        samples.add("tavrinctl apply, 1000 unchanged", ours, "s",
                    time_of(tavrinctl + " apply " + state_file));
        samples.add("tavrinctl apply, 1000 unchanged", bare, "s", time_of(calls));
    }
    DeleteFileA(state_file);
}

} // namespace

void measure_console(Samples& samples, int runs) {
    const std::string tavrinctl = e2e::program_folder() + "\\tavrinctl.exe";
    measure_show(samples, tavrinctl, runs);
    measure_apply(samples, tavrinctl, runs);
}

} // namespace bench
