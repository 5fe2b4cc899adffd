#include "base/text.h"
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/machine.h"
#include "ctl/verbs/verbs.h"
#include "net/discovery.h"
#include "net/socket.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace ctl {
namespace {

bool lists_servers(const MachineConfiguration& configuration) {
    const auto& entries = configuration.spec.entries;
    return std::any_of(entries.begin(), entries.end(), [](const SpecEntry& each) {
        return each.declaration.kind->form == ValueForm::server_list;
    });
}

/// The port that the window would scan.
std::uint16_t find_port() {
    for (const MachineConfiguration& each : read_machine()) {
        const Declaration* const port = find_titled(each, "Port");
        if (lists_servers(each) && port != nullptr && port->has_value())
            return port_titled(each, "Port");
    }
    throw Failure{ExitCode::usage, "no configuration has a port; use --port"};
}

std::vector<std::string> scan_at(std::uint16_t port, int wait) {
    char* block = nullptr;
    const char* const problem = scan_servers(port, &block, {.silence = wait});
    const std::unique_ptr<char, void (*)(void*)> owner(block, &std::free);
    if (problem != nullptr)
        throw Failure{ExitCode::failed, "Error scanning for Tavrin Servers: " + to_utf8(problem)};
    std::vector<std::string> found;
    split_string(found, join_found_servers(block), ',', false);
    return found;
}

void print_found(const std::vector<std::string>& found, std::uint16_t port, bool as_json) {
    if (as_json) {
        print(to_text({{"schema", schema_version},
                       {"machine", machine_identity()},
                       {"port", port},
                       {"servers", found}}));
        return;
    }
    for (const std::string& server : found)
        print(server + "\n");
    if (found.empty())
        print("no Tavrin Server answered at port " + std::to_string(port) + "\n");
}

ExitCode scan(const Arguments& arguments) {
    const std::uint16_t port = arguments.port ? *arguments.port : find_port();
    if (const std::string problem = start_sockets(); !problem.empty())
        throw Failure{ExitCode::failed, to_utf8(problem)};
    say("scanning for Tavrin Servers at port " + std::to_string(port), Level::info);
    print_found(scan_at(port, arguments.wait), port, arguments.json);
    return ExitCode::success;
}

} // namespace

const Verb scan_verb{
    .name = "scan",
    .usage = "[--json] [--verbose] [--port N] [--wait SECONDS]",
    .least_operands = 0,
    .most_operands = 0,
    .summary = "find servers on the local networks",
    .help = R"(
Looks for servers on the local networks by broadcast, and prints the addresses of those that answer. The exit
code is 0 even if no server answers.
)",
    .run = scan,
};

} // namespace ctl
