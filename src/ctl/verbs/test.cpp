#include "base/exceptions.h"
#include "base/text.h"
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/json.h"
#include "ctl/io/visible.h"
#include "ctl/machine/identity.h"
#include "ctl/machine/machine.h"
#include "ctl/machine/stored_value.h"
#include "ctl/verbs/bounded_network.h"
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

std::string place(const std::string& host, const std::string& port) {
    return visible(to_utf8(host)) + ":" + visible(port);
}

/// Of several things that went wrong one ends the program: what kept a test from being made counts more than
/// a server that refused.
int weight(ExitCode code) {
    switch (code) {
    case as_wished: return 0;
    case no_server: return 1;
    case invalid: return 2;
    case access_denied: return 4;
    default: return 3;
    }
}

/// Takes the results of all configurations, and prints each as soon as it is there.
class Results final : public TrialListener {
public:
    explicit Results(const Arguments& arguments) : arguments_(arguments) {}

    void trying(const std::string& host, std::uint16_t port) override;
    void tried(const std::string& host, std::uint16_t port, const char* problem) override;
    bool bad_port(const ServerItem& item) override;

    void test(const MachineConfiguration& configuration, const Declaration& test);
    /// Why no server of the configuration was tried.
    void none_tried(const Failure& failure);

    ExitCode code() const { return code_; }
    Json take_servers() { return std::move(servers_); }

private:
    void test_all_servers(const MachineConfiguration& configuration, const Declaration& test);
    void add(const Json& host, const Json& port, const Json& reason);
    void print_line(const std::string& place, const std::string& result) const;
    void end_with(ExitCode code);

    const Arguments& arguments_;
    std::string configuration_;
    ExitCode code_ = as_wished;
    Json servers_ = Json::array();
};

void Results::trying(const std::string& host, std::uint16_t port) {
    say("testing the connection to " + place(host, std::to_string(port)), Level::info);
    BoundedNetwork::begin(std::chrono::seconds(arguments_.timeout));
}

void Results::tried(const std::string& host, std::uint16_t port, const char* problem) {
    const std::string reason = problem != nullptr ? to_utf8(problem) : "";
    print_line(place(host, std::to_string(port)),
               problem != nullptr ? "failed: " + visible(reason) : "accepted");
    add(to_utf8(host), port, problem != nullptr ? Json(reason) : Json());
    end_with(problem != nullptr ? no_server : as_wished);
}

bool Results::bad_port(const ServerItem& item) {
    const std::string port = to_utf8(item.port_text.value_or(""));
    const std::string reason = "the port \"" + port + "\" is not a number";
    print_line(place(item.host, port), "failed: " + visible(reason));
    add(to_utf8(item.host), Json(), reason);
    end_with(invalid);
    return true;
}

void Results::none_tried(const Failure& failure) {
    say(configuration_ + ": " + failure.text);
    add(Json(), Json(), failure.text);
    end_with(failure.code);
}

void Results::add(const Json& host, const Json& port, const Json& reason) {
    servers_.push_back({{"configuration", configuration_},
                        {"host", host},
                        {"port", port},
                        {"accepted", reason.is_null()},
                        {"reason", reason}});
}

void Results::print_line(const std::string& place, const std::string& result) const {
    if (arguments_.json)
        return;
    print(place + "  " + result + "\n");
    finish_output();
}

void Results::end_with(ExitCode code) {
    if (weight(code) > weight(code_))
        code_ = code;
}

void Results::test(const MachineConfiguration& configuration, const Declaration& test) {
    configuration_ = to_utf8(configuration.name);
    try {
        test_all_servers(configuration, test);
    } catch (const Failure& failure) {
        none_tried(failure);
    }
}

void Results::test_all_servers(const MachineConfiguration& configuration, const Declaration& test) {
    const MachineKey key(configuration.key(), KEY_QUERY_VALUE);
    const auto value = [&](std::size_t title) {
        return value_titled(configuration, key, test.further[title].text);
    };
    const AgentIdentity agent{value(0), value(1)};
    const std::string servers = value(2);
    const std::uint16_t port = port_from(value(3));
    if (servers.find_first_not_of(',') == std::string::npos)
        throw Failure{no_server, "the server list is empty, so no server was reached"};
    try_servers(servers, port, agent, *this);
}

int test_all(const Arguments& arguments) {
    const Machine machine = read_machine();
    if (const std::string problem = start_sockets(); !problem.empty())
        throw Failure{failed, to_utf8(problem)};
    const BoundedNetwork bounded;
    Results results(arguments);
    bool any = false;
    for (const MachineConfiguration* each : chosen(machine, arguments.operands)) {
        if (const Declaration* const found = connection_test_of(*each)) {
            any = true;
            results.test(*each, *found);
        }
    }
    if (!any)
        throw Failure{invalid, "no configuration has a connection test"};
    if (arguments.json)
        print(to_text({{"schema", schema_version},
                       {"machine", machine_identity()},
                       {"servers", results.take_servers()}}));
    return results.code();
}

} // namespace

const Verb test_verb{
    .name = "test",
    .usage = "[CONFIG] [--json] [--verbose] [--timeout SECONDS]",
    .least_operands = 0,
    .most_operands = 1,
    .summary = "test the connection to every configured server",
    .help = R"(
Tests every server on the list of one configuration, or of every configuration that has a connection test,
and prints each result. The exit code is 6 if a server refused or was not reached. --timeout limits the whole
attempt for one server, including the look-up of its name.
)",
    .run = test_all,
};

} // namespace ctl
