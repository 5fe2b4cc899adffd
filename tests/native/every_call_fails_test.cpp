// One long session with the program, played again and again: in run k the k-th call into the system fails.
// Whatever fails, the program does not crash or hang, closes what it opened, tells the user one of its own
// texts and leaves every registry value old or new.
#include "app/control_ids.h"
#include "app/start_up.h"
#include "error/exceptions.h"
#include "net/socket.h"
#include "platform/main_window.h"
#include "platform/substitute/control.h"
#include "support/loopback.h"
#include "support/octets.h"
#include "support/program.h"
#include "support/registry.h"

#include <algorithm>
#include <cstdio>
#include <gmock/gmock.h>
#include <map>
#include <thread>
#include <vector>

namespace {

using testing::AnyOf;

constexpr char kSpec[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\nTavrinAgent\n"
                         "!Values\n$Name\nName\nh\nString\n$Domain\nDomain\nh\nString\n$"
                         "Port\nPort\nh\nInteger\n$Flag\nFlag\nh\nBoolean\n"
                         "$Level\nLevel\nh\nOptions\nlow\nhigh\n$Modem\nModem\nh\nCOM\n"
                         "!Actions\n$Folder\nFolder\nh\nDirectory\n$File\nFile\nh\nFile\nlog\n$"
                         "Signal\nTavrinSignal\nh\nSignalEvent\n"
                         "$Forget\nCertificates\nh\nRemoveKey\n$Servers\nServers\nh\nServerList\n"
                         "$Test\n\nh\nConnectionTest\nName\nDomain\nServers\nPort\n";

const std::string kOffer = [] {
    const Octets octets = "61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00"_octets;
    return std::string(octets.begin(), octets.end());
}();

struct Values {
    std::string old_text;
    std::string new_text;
};
/// What the session may have made of each value. The folder and the file are chosen in dialogs.
const std::map<std::string, Values> kValues = {
    {"Name", {"web1", "db7"}},  {"Domain", {"old", "old"}},         {"Flag", {"true", "false"}},
    {"Level", {"low", "high"}}, {"Folder", {"C:\\old", "C:\\new"}}, {"File", {"C:\\old.log", "C:\\new.log"}},
};

/// Beginnings of everything that the program may say while it is played.
const std::vector<std::string> kTexts = {
    "Window Registration Failed!",
    "Window Creation Failed!",
    "Error initializing socket subsystem: Error with wsastartup: ",
    "Cannot read out SOFTWARE\\Tavrin\\TRConfig",
    "Cannot get number of keys under SOFTWARE\\Tavrin\\TRConfig",
    "Cannot open path \"SOFTWARE\\TavrinTests\\Agent\" for reading",
    "Cannot open path \"SOFTWARE\\TavrinTests\\Agent\" for writing",
    "Cannot write key ",
    "Unable to create ",
    "Unable to add string to combobox",
    "Error reading value: Error parsing: ",
    "Error creating service window!",
    "Error scanning for Tavrin Servers:\n\n",
    "No Tavrin Servers found at port ",
    "The action has been taken.",
    "All the Tavrin Servers accepted the settings. ",
    "The connection to the server \"127.0.0.1\" at port ",
    "The Agent Service is currently started. ",
    "You have changed the configuration of the Agent. ",
    "Failed to stop service. ",
    "The Agent service is stopped. ",
    "The service could not be ",
};

/// One session, from a machine made ready to the program's end.
class Session : public ProgramTest {
public:
    /// The `nth` call into the system fails; none for 0.
    explicit Session(int nth) {
        socket_io_timeout = 5;
        loopback::Listener listener;
        prepare(listener.port());
        add_steps();
        std::thread server([&] { serve_one(listener); });
        substitute::fail_any_call(nth);
        run_program();
        substitute::fail_any_call(0);
        wake(listener);
        server.join();
    }
    ~Session() override { socket_io_timeout = 600; }

    void expect_sound() const {
        SCOPED_TRACE("failed: " + failed());
        expect_ended_properly();
        expect_handles_closed();
        expect_own_texts();
        expect_values_old_or_new();
    }
    std::string failed() const { return substitute::last_failed_call(); }
    int exit_code() const { return exit_code_; }

private:
    static constexpr int kAbnormal = -1;

    void TestBody() override {}

    void prepare(std::uint16_t server_port) {
        spec_file("Agent", kSpec);
        for (const auto& [name, values] : kValues)
            set_text(kAgentKey, name, values.old_text);
        set_text(kAgentKey, "Port", std::to_string(server_port));
        set_text(kAgentKey, "Servers", "127.0.0.1");
        make_key(kAgentKey + "\\Certificates");
        make_key("HARDWARE\\DEVICEMAP\\SERIALCOMM");
        set_text("HARDWARE\\DEVICEMAP\\SERIALCOMM", "one", "COM1");
        substitute::set_service("TavrinAgent", {.stop_time = 1000});
        substitute::choose_next_folder({.clicked = {"C:\\new"}});
        substitute::choose_next_file("C:\\new.log");
        substitute::keep_datagrams();
        for (int pass = 1; pass <= 3; ++pass)
            substitute::time_out_select(pass);
    }

    void add_steps() {
        visit("Name", [](HWND box) { SetWindowTextA(box, "db7"); });
        for (const char* looked_at : {"Domain", "Port", "Modem"})
            visit(looked_at, [](HWND) {});
        visit("Level", [](HWND list) { SendMessageA(list, CB_SETCURSEL, 1, 0); });
        for (const char* pushed : {"Flag", "Folder", "File", "Signal", "Forget", "Servers"})
            visit(pushed, [](HWND button) { SendMessageA(button, BM_CLICK, 0, 0); });
        then([] { SendMessageA(control(kTestConnectionId), BM_CLICK, 0, 0); });
        then([] { SetWindowPos(main_window, nullptr, 0, 0, 600, 400, SWP_NOZORDER | SWP_NOMOVE); });
        then([] { SendMessageA(control(kOkId), BM_CLICK, 0, 0); });
        // A window that could not be closed is closed again.
        for (int attempt = 0; attempt < 3; ++attempt)
            then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
    }

    /// Selects the entry and, when its page came up, acts on the page's last control.
    void visit(const char* title, void (*act)(HWND)) {
        then([title] { select(title); });
        then([act] {
            const std::vector<HWND> controls = page_controls();
            if (!controls.empty())
                act(controls.back());
        });
    }

    void run_program() {
        try {
            exit_code_ = ::run_program(nullptr, SW_SHOWNORMAL);
        } catch (const error::ESystemError&) {
            exit_code_ = kAbnormal;
        }
    }

    static void serve_one(loopback::Listener& listener) {
        const loopback::Handle agent = listener.accept();
        if (agent.get() == INVALID_SOCKET)
            return;
        loopback::send_all(agent.get(), kOffer);
        loopback::receive_all(agent.get());
    }
    /// A server that no program connected to is not left waiting.
    static void wake(const loopback::Listener& listener) {
        const loopback::Handle caller(socket(AF_INET, SOCK_STREAM, 0));
        const sockaddr_in server = loopback::endpoint(loopback::address(), listener.port());
        connect(caller.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server);
    }

    void expect_ended_properly() const {
        // An event that cannot be signalled ends the program abnormally, on purpose.
        const bool event_failed = failed() == "CreateEventA" || failed() == "SetEvent";
        if (event_failed)
            EXPECT_EQ(exit_code_, kAbnormal);
        else
            EXPECT_THAT(exit_code_, AnyOf(0, 1));
    }
    /// What cannot be closed stays open, and so do an event that cannot be signalled and a socket that cannot
    /// be made blocking again, as documented at their functions.
    void expect_handles_closed() const {
        const auto left_by = [this](auto... functions) { return ((failed() == functions) || ...) ? 1 : 0; };
        EXPECT_EQ(substitute::open_keys(), left_by("RegCloseKey"));
        EXPECT_EQ(substitute::open_service_handles(), left_by("CloseServiceHandle"));
        EXPECT_EQ(substitute::open_events(), left_by("CloseHandle", "SetEvent"));
        EXPECT_LE(static_cast<int>(substitute::open_sockets()), left_by("closesocket", "ioctlsocket"));
    }
    void expect_own_texts() const {
        for (const SeenBox& box : boxes.seen()) {
            const bool known = std::any_of(kTexts.begin(), kTexts.end(), [&](const std::string& text) {
                return box.text.starts_with(text);
            });
            EXPECT_TRUE(known) << box.caption << ": " << box.text;
        }
    }
    static void expect_values_old_or_new() {
        for (const auto& [name, values] : kValues)
            EXPECT_THAT(text_value(kAgentKey, name), AnyOf(values.old_text, values.new_text)) << name;
    }

    int exit_code_ = 0;
};

TEST(EveryCallFails, TheSessionSucceedsWhenNothingFails) {
    const Session session(0);
    session.expect_sound();
    EXPECT_EQ(session.exit_code(), 0);
    for (const auto& [name, values] : kValues)
        EXPECT_EQ(text_value(kAgentKey, name), values.new_text);
    EXPECT_FALSE(key_exists(kAgentKey + "\\Certificates"));
    EXPECT_EQ(substitute::service_counts("TavrinAgent").starts, 1);
}

TEST(EveryCallFails, NoFailureCrashesHangsLeaksOrLosesAValue) {
    std::map<std::string, int> failures;
    for (int nth = 1;; ++nth) {
        const Session session(nth);
        if (session.failed().empty())
            break;
        session.expect_sound();
        ++failures[session.failed()];
        if (testing::Test::HasFailure())
            break;
    }
    int total = 0;
    for (const auto& [function, times] : failures)
        total += times;
    std::printf("%d calls of %zu functions were failed\n", total, failures.size());
    EXPECT_GT(failures.size(), 40u);
}

} // namespace
