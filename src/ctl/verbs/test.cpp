#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/system.h"
#include "ctl/machine/machine.h"
#include "ctl/verbs/verbs.h"
#include "net/socket.h"
#include "protocol/try_servers.h"

#include <chrono>
#include <memory>

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

using Clock = std::chrono::steady_clock;

Clock::time_point give_up_at;

std::chrono::milliseconds time_left() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(give_up_at - Clock::now());
}

/// Windows has no limit for its wait for a name server that does not answer.
net::HostLookup look_up(const char* name) {
    const auto found = std::make_shared<net::HostLookup>();
    const auto ask = [found, host = std::string(name)] { *found = net::look_up_host(host.c_str()); };
    if (!finishes_within(time_left(), ask))
        return {.failed = true, .code = WSAETIMEDOUT};
    return *found;
}

/// While it exists, one limit applies to a whole attempt: to the look-up of the server's name, the connection
/// and every answer together.
class BoundedNetwork {
public:
    BoundedNetwork() {
        net::patience = time_left;
        net::host_lookup = look_up;
    }
    BoundedNetwork(const BoundedNetwork&) = delete;
    BoundedNetwork& operator=(const BoundedNetwork&) = delete;
    ~BoundedNetwork() {
        net::patience = nullptr;
        net::host_lookup = net::look_up_host;
    }

    static void begin_attempt(std::chrono::seconds limit) { give_up_at = Clock::now() + limit; }
};

std::string place(const std::string& host, const std::string& port) {
    return printable(to_utf8(host)) + ":" + printable(port);
}

/// Decides which of several failures gives the exit code: a failure that prevented a test counts more than a
/// server that refused.
int weight(ExitCode code) {
    switch (code) {
    case ExitCode::success: return 0;
    case ExitCode::no_server: return 1;
    case ExitCode::invalid: return 2;
    case ExitCode::access_denied: return 4;
    default: return 3;
    }
}

/// Collects the results of all configurations, and prints each result immediately.
class Results final : public TrialListener {
public:
    explicit Results(const Arguments& arguments) : arguments_(arguments) {}

    void trying(const std::string& host, std::uint16_t port) override;
    void tried(const std::string& host, std::uint16_t port, const char* problem) override;
    bool bad_port(const ServerItem& item) override;

    void test(const MachineConfiguration& configuration, const Declaration& test);
    /// Records why no server of the configuration was tried.
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
    ExitCode code_ = ExitCode::success;
    Json servers_ = Json::array();
};

void Results::trying(const std::string& host, std::uint16_t port) {
    say("testing the connection to " + place(host, std::to_string(port)), Level::info);
    BoundedNetwork::begin_attempt(std::chrono::seconds(arguments_.timeout));
}

void Results::tried(const std::string& host, std::uint16_t port, const char* problem) {
    const std::string reason = problem != nullptr ? to_utf8(problem) : "";
    print_line(place(host, std::to_string(port)),
               problem != nullptr ? "failed: " + printable(reason) : "accepted");
    add(to_utf8(host), port, problem != nullptr ? Json(reason) : Json());
    end_with(problem != nullptr ? ExitCode::no_server : ExitCode::success);
}

bool Results::bad_port(const ServerItem& item) {
    const std::string port = to_utf8(item.port_text.value_or(""));
    const std::string reason = "the port \"" + port + "\" is not a number";
    print_line(place(item.host, port), "failed: " + printable(reason));
    add(to_utf8(item.host), Json(), reason);
    end_with(ExitCode::invalid);
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
    const auto value = [&](std::size_t title) {
        return value_titled(configuration, test.further[title].text);
    };
    const AgentIdentity agent{value(0), value(1)};
    const std::string servers = value(2);
    const std::uint16_t port = port_titled(configuration, test.further[3].text);
    if (servers.find_first_not_of(',') == std::string::npos)
        throw Failure{ExitCode::no_server, "the server list is empty, so no server was reached"};
    try_servers(servers, port, agent, *this);
}

ExitCode test_all(const Arguments& arguments) {
    const Machine machine = read_machine();
    if (const std::string problem = start_sockets(); !problem.empty())
        throw Failure{ExitCode::failed, to_utf8(problem)};
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
        throw Failure{ExitCode::invalid, "no configuration has a connection test"};
    if (arguments.json) {
        print(to_text({{"schema", schema_version},
                       {"machine", machine_identity()},
                       {"servers", results.take_servers()}}));
    }
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
and prints each result. The exit code is 6 if a server refused, or could not be reached. --timeout limits the
whole attempt for one server, including the look-up of its name.
)",
    .run = test_all,
};

} // namespace ctl
