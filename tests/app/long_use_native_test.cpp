// Long use over the substitute: at the end, as much is open as after everything had been done once, and
// AddressSanitizer finds no leak.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/loopback.h"
#include "support/program.h"
#include "support/registry.h"
#include "support/substitute/whole_session.h"

#include <gmock/gmock.h>

#include <atomic>
#include <iterator>
#include <map>
#include <thread>

namespace {

/// Accepts this number of agents, one after the other.
class BusyServer {
public:
    explicit BusyServer(int agents) : thread_([this, agents] { serve(agents); }) {}
    ~BusyServer() {
        over_ = true;
        thread_.join();
    }
    BusyServer(const BusyServer&) = delete;
    BusyServer& operator=(const BusyServer&) = delete;
    std::uint16_t port() const { return listener_.port(); }

private:
    void serve(int agents) {
        for (int served = 0; served < agents && !over_;) {
            const loopback::Handle agent = listener_.accept();
            if (agent.get() == INVALID_SOCKET)
                continue; // on a busy machine, the next agent may take longer than the listener waits
            ++served;
            loopback::send_all(agent.get(), accepting_server);
            loopback::receive_all(agent.get());
        }
    }

    loopback::Listener listener_;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

struct Open {
    std::size_t windows;
    std::size_t sockets;
    int keys;
    int events;
    int service_handles;
    int device_contexts;
    bool operator==(const Open&) const = default;
};

Open open_now() {
    return {substitute::open_windows(),
            substitute::open_sockets(),
            substitute::open_keys(),
            substitute::open_events(),
            substitute::open_service_handles(),
            substitute::call_count("GetDC") - substitute::call_count("ReleaseDC")};
}

std::ostream& operator<<(std::ostream& out, const Open& open) {
    return out << open.windows << " windows, " << open.sockets << " sockets, " << open.keys << " keys, "
               << open.events << " events, " << open.service_handles << " service handles, "
               << open.device_contexts << " device contexts";
}

class LongUse : public ProgramTest {
protected:
    static constexpr int first_count = 100;
    static constexpr int switch_count = 10000;
    static constexpr int test_count = 1000;
    static constexpr int scan_count = 100;
    static constexpr int box_count = 1000;

    void prepare() {
        substitute::keep_datagrams();
        make_key(agent_key + "\\Certificates");
        set_text(agent_key, "Servers", "127.0.0.1");
        set_text(agent_key, "Port", std::to_string(server.port()));
        spec_file("Agent", "SOFTWARE\\TavrinTests\\Agent\nAgent\n!Values\n"
                           "$Name\nName\nh\nString\n$Domain\nDomain\nh\nString\n$Port\nPort\nh\nInteger\n"
                           "$Flag\nFlag\nh\nBoolean\n$Level\nLevel\nh\nOptions\nlow\nhigh\n"
                           "$Modem\nModem\nh\nCOM\n$Folder\nFolder\nh\nDirectory\n$File\nFile\nh\nFile\nlog\n"
                           "$Signal\nTavrinSignal\nh\nSignalEvent\n$Forget\nCertificates\nh\nRemoveKey\n"
                           "$Servers\nServers\nh\nServerList\n"
                           "$Test\n\nh\nConnectionTest\nName\nDomain\nServers\nPort\n");
    }

    /// Goes from page to page and edits the first control of each.
    void switch_pages(int times) {
        static constexpr const char* title_pool[] = {"Name",   "Domain", "Flag",   "Values", "Level",
                                                     "Folder", "File",   "Forget", "Modem"};
        for (int time = 0; time < times; ++time) {
            then([time] {
                select(title_pool[static_cast<std::size_t>(time) % std::size(title_pool)]);
                if (page())
                    edit(page_controls().front(), time);
            });
        }
        then([] { select("Name"); });
    }
    static void edit(HWND control, int time) {
        SetWindowTextA(control, time % 2 ? "one" : "two");
        SendMessageA(control, BM_CLICK, 0, 0);
        SendMessageA(control, CB_SETCURSEL, static_cast<WPARAM>(time % 2), 0);
    }
    void test_the_connection(int times) {
        for (int time = 0; time < times; ++time)
            then([] { SendMessageA(control(test_connection_id), BM_CLICK, 0, 0); });
    }
    void scan(int times) {
        then([] { select("Servers"); });
        for (int time = 0; time < times; ++time) {
            then([] {
                for (int pass = 1; pass <= 3; ++pass)
                    substitute::time_out_select(pass);
                SendMessageA(page_controls().back(), BM_CLICK, 0, 0);
            });
        }
        then([] { select("Name"); });
    }
    void open_and_close_boxes(int times) {
        then([] { select("Signal"); });
        for (int time = 0; time < times; ++time)
            then([] { SendMessageA(page_controls().front(), BM_CLICK, 0, 0); });
        then([] { select("Name"); });
    }

    BusyServer server{first_count + test_count};
};

TEST(Notes, DoNotGrowWithAProgramThatRunsForEver) {
    substitute::reset();
    ReleaseDC(nullptr, nullptr);
    for (int call = 0; call < 100'000; ++call)
        GetTickCount64();
    EXPECT_EQ(substitute::call_count("GetTickCount64"), 100'000);
    const std::vector<std::string> calls = substitute::calls();
    EXPECT_EQ(calls.size(), 100'000u);
    EXPECT_EQ(calls.front(), "GetTickCount64");
}

TEST_F(LongUse, LeavesNothingOpen) {
    prepare();
    Open before = {};
    Open after = {};
    switch_pages(first_count);
    test_the_connection(first_count);
    scan(first_count);
    open_and_close_boxes(first_count);
    then([&] { before = open_now(); });
    switch_pages(switch_count);
    test_the_connection(test_count);
    scan(scan_count);
    open_and_close_boxes(box_count);
    then([&] { after = open_now(); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(after, before);
    EXPECT_EQ(open_now(), (Open{0, 1, 0, 0, 0, 0})) << "the socket is the server's own";
    std::map<std::string, int> seen;
    for (const SeenBox& box : boxes.seen())
        ++seen[box.caption];
    EXPECT_EQ(seen, (std::map<std::string, int>{{"Connection test successful", first_count + test_count},
                                                {"No Tavrin Servers Found", first_count + scan_count},
                                                {"Action taken", first_count + box_count}}));
}

} // namespace
