#include "net/socket.h"
#include "pages/configuration.h"
#include "substitute/control.h"
#include "support/boxes.h"
#include "support/discovery_server.h"
#include "support/page.h"
#include "support/registry.h"
#include "support/spec_text.h"

#include <gmock/gmock.h>

namespace {

using loopback::Answer;
using loopback::discovery_answer;
using loopback::DiscoveryServer;

DWORD loopback_address() { return htonl(0x7F000001); }

/// The page of a server list, on a machine whose only network is 127.0.0.1.
class Scan : public CleanSystem {
protected:
    Scan() { EXPECT_EQ(net_startup(), nullptr); }
    ~Scan() override { EXPECT_EQ(substitute::open_sockets(), 0U); }

    void show(const std::string& port) {
        substitute::set_interfaces({{loopback_address(), 0xFFFFFFFF}});
        make_key(test_key);
        set_text(test_key, "List", "old:1");
        set_text(test_key, "Port", port);
        configuration =
            parse("\\" + test_key + "\nAgent\n!G\n$L\nList\nh\nServerList\n$Port\nPort\nh\nInteger\n");
        configuration->entry_by_title("L").select(main.window());
        main.page_changes();
    }
    void scan() { click(main.control(2)); }
    std::string list() const { return configuration->text_by_title("L"); }

    /// Keeps datagrams instead of sending them, and lets no pass wait.
    static void let_nobody_answer() {
        substitute::keep_datagrams();
        for (int pass = 1; pass <= 3; ++pass)
            substitute::time_out_select(pass);
    }
    /// The text of the wait window, as long as there is one.
    static std::string wait_text() {
        const HWND wait = FindWindowA(nullptr, "Tavrin Service Control");
        return wait == nullptr ? "no wait window" : text_of(GetWindow(wait, GW_CHILD));
    }

    Boxes boxes;
    StandInMainWindow main{436, 229};
    std::unique_ptr<Configuration> configuration;
};

TEST_F(Scan, ReplacesTheListByTheServersFound) {
    DiscoveryServer server([](int) {
        return std::vector<Answer>{{9, discovery_answer()}, {2, discovery_answer()}, {9, discovery_answer()}};
    });
    show(std::to_string(server.port()));
    scan();
    EXPECT_EQ(list(), "127.0.0.9,127.0.0.2");
    EXPECT_EQ(text_of(main.control(1)), "127.0.0.9,127.0.0.2");
    EXPECT_TRUE(configuration->entry_by_title("L").changed());
    EXPECT_EQ(main.page_changes(), 1);
    EXPECT_TRUE(boxes.seen().empty());
    EXPECT_EQ(wait_text(), "no wait window");
    EXPECT_EQ(text_value(test_key, "List"), "old:1");
}

TEST_F(Scan, LeavesTheListAloneWhenNobodyAnswers) {
    show("4711");
    type(main.control(1), "typed");
    main.page_changes();
    let_nobody_answer();
    std::string waited;
    boxes.while_shown([&] { waited = wait_text(); });
    scan();
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].text, "No Tavrin Servers found at port 4711");
    EXPECT_EQ(boxes.seen()[0].caption, "No Tavrin Servers Found");
    EXPECT_EQ(boxes.seen()[0].style, MB_OK | MB_ICONINFORMATION);
    EXPECT_EQ(text_of(main.control(1)), "typed");
    EXPECT_EQ(list(), "old:1");
    EXPECT_EQ(main.page_changes(), 0);
    ASSERT_EQ(substitute::kept_datagrams().size(), 3U);
    EXPECT_EQ(substitute::kept_datagrams()[0].port, 4711);
    EXPECT_EQ(waited, "no wait window");
}

TEST_F(Scan, ShowsAPortAbove32767AsNegativeAndUsesItUnsigned) {
    show("40000");
    let_nobody_answer();
    scan();
    EXPECT_EQ(boxes.seen().at(0).text, "No Tavrin Servers found at port -25536");
    EXPECT_EQ(substitute::kept_datagrams().at(0).port, 40000);
}

TEST_F(Scan, UsesTheLow16BitsOfThePort) {
    show("70247");
    let_nobody_answer();
    scan();
    EXPECT_EQ(boxes.seen().at(0).text, "No Tavrin Servers found at port 4711");
    EXPECT_EQ(substitute::kept_datagrams().at(0).port, 4711);
}

TEST_F(Scan, UsesThePortAsItIsEditedButNotWritten) {
    show("4711");
    configuration->value_by_title("Port").set_value("4712");
    let_nobody_answer();
    scan();
    EXPECT_EQ(substitute::kept_datagrams().at(0).port, 4712);
}

TEST_F(Scan, ThatFailsShowsWhyAndThenThatThereAreNoServers) {
    show("40000");
    substitute::keep_datagrams();
    substitute::fail_call("socket");
    std::vector<std::string> waited;
    for (int box = 0; box < 2; ++box)
        boxes.while_shown([&] { waited.push_back(wait_text()); });
    scan();
    ASSERT_EQ(boxes.seen().size(), 2U);
    EXPECT_EQ(boxes.seen()[0].text, "Error scanning for Tavrin Servers:\n\nCould not create socket");
    EXPECT_EQ(boxes.seen()[0].caption, "Error scanning for Tavrin Servers");
    EXPECT_EQ(boxes.seen()[0].style, MB_OK | MB_ICONERROR);
    EXPECT_EQ(boxes.seen()[1].text, "No Tavrin Servers found at port -25536");
    EXPECT_EQ(boxes.seen()[1].caption, "No Tavrin Servers Found");
    EXPECT_EQ(boxes.seen()[1].style, MB_OK | MB_ICONINFORMATION);
    EXPECT_EQ(waited.at(0), "Scanning for Tavrin Servers running at port -25536. Please be patient.");
    EXPECT_EQ(waited.at(1), "no wait window");
    EXPECT_EQ(list(), "old:1");
    EXPECT_EQ(main.page_changes(), 0);
}

TEST_F(Scan, GoesOnWithoutAWaitWindow) {
    show("4711");
    let_nobody_answer();
    substitute::fail_call("CreateWindowExA");
    scan();
    ASSERT_EQ(boxes.seen().size(), 2U);
    EXPECT_EQ(boxes.seen()[0].text, "Error creating service window!");
    EXPECT_EQ(boxes.seen()[1].text, "No Tavrin Servers found at port 4711");
}

} // namespace
