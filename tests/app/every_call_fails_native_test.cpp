// Repeats one long session with the program: in run k, the k-th call into the system fails, or the k-th
// request for memory. Whatever fails, the program does not crash or hang, closes what it opened, tells the
// user one of its own texts for that failure and leaves every registry value old or new.
#include "substitute/control.h"
#include "support/registry.h"
#include "support/substitute/whole_session.h"

#include <algorithm>
#include <cstdio>
#include <gmock/gmock.h>
#include <map>
#include <numeric>
#include <set>
#include <vector>

namespace {

using testing::AnyOf;

using Texts = std::vector<std::string>;

/// Beginnings of the texts that the program shows when nothing fails.
const Texts undisturbed = {
    "The action has been taken.",
    "No Tavrin Servers found at port ",
    "All the Tavrin Servers accepted the settings. ",
    "The Agent Service is currently started. ",
};

/// Words of the text that the program shows for each failed call. It does not report failures of other calls.
const std::map<std::string, Texts> texts_on_failure = {
    {"connect", {"\n\nError connecting: Connection refused."}},
    {"ControlService",
     {"Failed to stop service. You will have to restart the service manually",
      "The service could not be automatically restarted."}},
    {"CreateWindowExA", {"Window Creation Failed!", "Unable to create ", "Error creating service window!"}},
    {"GetClassInfoExA", {"Window Registration Failed!"}},
    // The port's box is empty, and an empty port is 0.
    {"GetWindowTextA", {"at port 0 failed. The reason was:\n\nError connecting: "}},
    {"ioctlsocket", {"\n\nError setting socket to nonblocking: "}},
    // The question whether to restart was never seen, so the answer was not yes.
    {"MessageBoxA", {"The service could not be automatically restarted."}},
    {"OpenSCManagerA", {"you will have to restart the Agent service manually."}},
    {"OpenServiceA", {"you will have to restart the Agent service manually."}},
    {"QueryServiceStatus",
     {"you will have to restart the Agent service manually.",
      "Failed to stop service. You will have to restart the service manually",
      "The service could not be automatically restarted."}},
    {"recv", {"Error receiving data: Bad error happened without sleep in socket_recv(): "}},
    {"RegisterClassExA", {"Window Registration Failed!"}},
    {"RegOpenKeyExA",
     {"Cannot open path \"SOFTWARE\\TavrinTests\\Agent\" for reading",
      "Cannot open path \"SOFTWARE\\TavrinTests\\Agent\" for writing",
      "Cannot read out SOFTWARE\\Tavrin\\TRConfig"}},
    {"RegQueryInfoKeyA", {"Cannot get number of keys under SOFTWARE\\Tavrin\\TRConfig"}},
    // The port cannot be read and is 0.
    {"RegQueryValueExA", {"at port 0 failed. The reason was:\n\nError connecting: "}},
    {"RegSetValueExA", {"Cannot write key "}},
    {"select", {"Error connecting: Select returned: -1", "Bad error happened in socket_recv(): "}},
    {"send",
     {"socket_send returned error in socket_write_buf: Bad error without sleep happened in socket_send(): "}},
    {"sendto", {"Error scanning for Tavrin Servers:\n\nUDP send failed error code 10055"}},
    {"setsockopt",
     {"Error scanning for Tavrin Servers:\n\nUDP receive failed", "\n\nError disabling Nagle: "}},
    {"SetWindowTextA", {"at port 0 failed. The reason was:\n\nError connecting: "}},
    {"socket",
     {"Error scanning for Tavrin Servers:\n\nCould not create socket", "\n\nError creating socket: "}},
    {"WSAStartup", {"Error initializing socket subsystem: Error with wsastartup: "}},
    {"StartServiceA", {"The service could not be started. Please start the Agent service manually."}},
};

/// Said when no scan came before the connection test, which then meets the silence meant for the scan.
constexpr char silence[] = "The reason was:\n\nConnection timed out";

const Texts out_of_memory = {
    "Error scanning for Tavrin Servers:\n\nOut of memory",
    "Error scanning for Tavrin Servers:\n\nNo memory for small nic structure",
    "The reason was:\n\nError allocating memory",
    "The reason was:\n\nnegotiate_nack.reason: Unable to allocate data in read_string",
};

bool holds_one_of(const std::string& text, const Texts& parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [&](const std::string& part) { return text.find(part) != std::string::npos; });
}

/// The program reports only a failed creation of a control. If the text of a box cannot be set or read, the
/// box counts as empty.
void expect_values_old_or_new(const std::string& failed) {
    const bool box_is_empty = failed == "SetWindowTextA" || failed == "GetWindowTextA";
    for (const auto& [name, values] : WholeSession::values()) {
        const std::string instead = box_is_empty ? "" : values.old_text;
        EXPECT_THAT(text_value(agent_key, name), AnyOf(values.old_text, values.new_text, instead)) << name;
    }
}

/// An event that cannot be signalled ends the program abnormally, on purpose.
void expect_ended_properly(const WholeSession& session) {
    const std::string failed = session.failed_call();
    if (failed == "CreateEventA" || failed == "SetEvent") {
        EXPECT_EQ(session.exit_code(), WholeSession::abnormal);
    } else {
        EXPECT_THAT(session.exit_code(), AnyOf(0, 1));
    }
}

/// What cannot be closed stays open, and so do an event that cannot be signalled and a socket that cannot be
/// made blocking again, as documented at their functions.
void expect_handles_closed(const std::string& failed) {
    const auto left_by = [&](auto... functions) { return ((failed == functions) || ...) ? 1 : 0; };
    EXPECT_EQ(substitute::open_keys(), left_by("RegCloseKey"));
    EXPECT_EQ(substitute::open_service_handles(), left_by("CloseServiceHandle"));
    EXPECT_EQ(substitute::open_events(), left_by("CloseHandle", "SetEvent"));
    EXPECT_LE(static_cast<int>(substitute::open_sockets()), left_by("closesocket", "ioctlsocket"));
}

void expect_sound(const WholeSession& session, const Texts& on_failure) {
    expect_ended_properly(session);
    expect_handles_closed(session.failed_call());
    expect_values_old_or_new(session.failed_call());
    for (const SeenBox& box : session.seen()) {
        EXPECT_TRUE(holds_one_of(box.text, undisturbed) || holds_one_of(box.text, on_failure) ||
                    box.text.ends_with(silence))
            << box.caption << ": " << box.text;
    }
}

Texts texts_for(const std::string& function) {
    const auto found = texts_on_failure.find(function);
    return found == texts_on_failure.end() ? Texts{} : found->second;
}

void expect_everything_saved() {
    for (const auto& [name, values] : WholeSession::values())
        EXPECT_EQ(text_value(agent_key, name), values.new_text);
    EXPECT_FALSE(key_exists(agent_key + "\\Certificates"));
    EXPECT_EQ(substitute::service_counts("TavrinAgent").starts, 1);
}

TEST(EveryCallFails, TheSessionSucceedsWhenNothingFails) {
    const WholeSession session({});
    expect_sound(session, {});
    EXPECT_EQ(session.exit_code(), 0);
    EXPECT_EQ(session.seen().size(), 4U);
    expect_everything_saved();
}

/// A run may end without a failed call, because the number of waits differs from run to run.
bool waits_for_its_server(const std::string& function) { return function == "recv" || function == "select"; }

TEST(EveryCallFails, NoFailureCrashesHangsLeaksOrLosesAValue) {
    // These have no failure to inject.
    const std::set<std::string> never_failing = {"GetTickCount64", "Sleep", "inet_addr"};
    std::map<std::string, int> failures;
    const std::vector<std::string> calls = WholeSession({}).calls();
    for (const std::string& function : calls) {
        if (never_failing.contains(function))
            continue;
        SCOPED_TRACE(function + " " + std::to_string(failures[function] + 1));
        const WholeSession session({.function = function, .call = ++failures[function]});
        EXPECT_TRUE(session.failed_call() == function || waits_for_its_server(function));
        expect_sound(session, texts_for(function));
    }
    for (const auto& [function, times] : failures)
        std::printf("%s: %d\n", function.c_str(), times);
    const int total = std::accumulate(failures.begin(), failures.end(), 0,
                                      [](int sum, const auto& each) { return sum + each.second; });
    std::printf("%d calls of %zu functions were failed\n", total, failures.size());
}

/// Plays the session until no request for memory is left to fail, and records the texts shown.
void let_memory_run_out(bool for_good, const std::string& answer, const Texts& on_answer,
                        std::set<std::string>& said) {
    std::size_t nth = 1;
    for (bool reached = true; reached && !testing::Test::HasFailure(); ++nth) {
        const WholeSession session({.memory = nth, .memory_stays_short = for_good}, answer);
        SCOPED_TRACE("request " + std::to_string(nth));
        reached = session.memory_requests() >= nth;
        Texts texts = on_answer;
        texts.insert(texts.end(), out_of_memory.begin(), out_of_memory.end());
        expect_sound(session, texts);
        for (const std::string& text : out_of_memory) {
            for (const SeenBox& box : session.seen()) {
                if (holds_one_of(box.text, {text}))
                    said.insert(text);
            }
        }
    }
    std::printf("%zu requests for memory were failed\n", nth - 2);
}

TEST(EveryCallFails, NoShortageOfMemoryCrashesHangsLeaksOrLosesAValue) {
    std::set<std::string> said;
    for (const bool for_good : {false, true}) {
        let_memory_run_out(for_good, accepting_server, {}, said);
        let_memory_run_out(for_good, refusing_server, {"The reason was:\n\nTavrin Server rejected us: no"},
                           said);
    }
    EXPECT_THAT(said, testing::UnorderedElementsAreArray(out_of_memory));
}

} // namespace
