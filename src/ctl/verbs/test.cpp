#include "base/exceptions.h"
#include "base/text.h"
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/json.h"
#include "ctl/io/visible.h"
#include "ctl/machine/machine.h"
#include "ctl/machine/stored_value.h"
#include "ctl/verbs/verbs.h"
#include "net/socket.h"
#include "protocol/try_servers.h"

#include <algorithm>

namespace ctl {
namespace {

const Declaration* connection_test_of(const MachineConfiguration& configuration) {
    const Declaration* last = nullptr;
    for (const SpecEntry& each : configuration.spec.entries) {
        if (each.declaration.kind->least_further != 0)
            last = &each.declaration;
    }
    return last;
}

/// The value of the first entry with the title, as the window's own test takes it.
std::string value_titled(const MachineConfiguration& configuration, const MachineKey& key,
                         std::string_view title) {
    const std::vector<SpecEntry>& entries = configuration.spec.entries;
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const SpecEntry& each) {
        return each.declaration.title.text == title;
    });
    if (found == entries.end())
        throw Failure{invalid, "Did not find anything with the title \"" + to_utf8(title) + "\""};
    if (!found->declaration.has_value())
        throw Failure{invalid, "Found title, but it is not a CommonRegKey"};
    return look_up(key, std::string(found->declaration.value_name.text)).text;
}

std::uint16_t port_from(const std::string& text) {
    try {
        return static_cast<std::uint16_t>(parse_int(text));
    } catch (const error::EParseError& failure) {
        throw Failure{invalid, "Error reading value: " + to_utf8(failure.full_text())};
    }
}

/// Prints each server as soon as its answer is there.
class Printing final : public TrialListener {
public:
    Printing(const MachineConfiguration& configuration, bool as_json)
        : name_(to_utf8(configuration.name)), as_json_(as_json) {}

    void trying(const std::string& host, std::uint16_t port) override;
    void tried(const std::string& host, std::uint16_t port, const char* problem) override;
    void bad_port(const ServerItem& item) override;

    int servers = 0;
    int refused = 0;
    Json results = Json::array();

private:
    std::string name_;
    bool as_json_;
};

std::string place(const std::string& host, std::uint16_t port) {
    return visible(to_utf8(host)) + ":" + std::to_string(port);
}

void Printing::trying(const std::string& host, std::uint16_t port) {
    say("testing the connection to " + place(host, port), Level::info);
}

void Printing::tried(const std::string& host, std::uint16_t port, const char* problem) {
    ++servers;
    refused += problem != nullptr ? 1 : 0;
    const std::string reason = problem != nullptr ? to_utf8(problem) : "";
    if (!as_json_) {
        print(place(host, port) + (problem != nullptr ? "  failed: " + visible(reason) : "  accepted") +
              "\n");
    }
    results.push_back({{"configuration", name_},
                       {"host", to_utf8(host)},
                       {"port", port},
                       {"accepted", problem == nullptr},
                       {"reason", problem != nullptr ? Json(reason) : Json()}});
}

void Printing::bad_port(const ServerItem& item) {
    throw Failure{invalid, "The server port \"" + to_utf8(item.port_text.value_or("")) +
                               "\" for the server \"" + to_utf8(item.host) +
                               "\" cannot be parsed as a number."};
}

struct Results {
    int servers = 0;
    int refused = 0;
    Json all = Json::array();
};

void test_configuration(const MachineConfiguration& configuration, const Declaration& test, bool as_json,
                        Results& results) {
    const MachineKey key(configuration.key(), KEY_QUERY_VALUE);
    const auto value = [&](std::size_t title) {
        return value_titled(configuration, key, test.further[title].text);
    };
    const AgentIdentity agent{value(0), value(1)};
    const std::string servers = value(2);
    Printing printing(configuration, as_json);
    try_servers(servers, port_from(value(3)), agent, printing);
    if (printing.servers == 0)
        say(to_utf8(configuration.name) + ": the server list is empty, so no server was reached");
    results.servers += printing.servers;
    results.refused += printing.servers == 0 ? 1 : printing.refused;
    results.all.insert(results.all.end(), printing.results.begin(), printing.results.end());
}

void start_network(int timeout) {
    if (const char* const problem = net_startup())
        throw Failure{failed, std::string("Error initializing socket subsystem: ") + to_utf8(problem)};
    socket_io_timeout = timeout;
    net::connect_timeout = timeout;
}

int test_all(const Arguments& arguments) {
    const Machine machine = read_machine();
    Results results;
    bool any = false;
    start_network(arguments.timeout);
    for (const MachineConfiguration* each : chosen(machine, arguments.operands)) {
        if (const Declaration* const found = connection_test_of(*each)) {
            any = true;
            test_configuration(*each, *found, arguments.json, results);
        }
    }
    if (!any)
        throw Failure{invalid, "no connection test is offered"};
    if (arguments.json)
        print(to_text({{"schema", schema_version}, {"servers", std::move(results.all)}}));
    return results.refused != 0 ? no_server : as_wished;
}

} // namespace

const Verb test_verb{
    .name = "test",
    .usage = "[CONFIG] [--json] [--verbose] [--timeout SECONDS]",
    .least_operands = 0,
    .most_operands = 1,
    .summary = "test the connection to every configured server",
    .help = R"(
Negotiates with every server on the list of one configuration, or of each that has a connection test, and
prints the result of each. Ends with 6 if a server refused or was not reached. --timeout bounds the whole
attempt for one server, including the look-up of its name.
)",
    .run = test_all,
};

} // namespace ctl
