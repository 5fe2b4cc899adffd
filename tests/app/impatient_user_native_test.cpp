// Input that arrived while a test or a scan blocked the program.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/discovery_server.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr char list_spec[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
                             "!All\n$Name\nName\nh\nString\n$Servers\nServers\nh\nServerList\n"
                             "$Port\nPort\nh\nInteger\n"
                             "$Test\n\nh\nConnectionTest\nName\nName\nServers\nPort\n";

HWND test_button() { return control(test_connection_id); }
HWND scan_button() { return page_controls().at(1); }

class ImpatientUser : public ProgramTest {
protected:
    void SetUp() override {
        spec_file("A", list_spec);
        set_text(agent_key, "Name", "web1");
        set_text(agent_key, "Port", "5000");
        set_text(agent_key, "Servers", "alpha,beta");
        substitute::fail_every_call("gethostbyname", WSAHOST_NOT_FOUND);
        substitute::fail_every_call("socket", WSAENETDOWN);
        then([] { select("Servers"); });
    }
    /// `meanwhile` happens while the program waits for `function`.
    void then_click(const std::function<HWND()>& button, const char* function,
                    const std::function<void()>& meanwhile) {
        then([=] {
            substitute::when_called(function, meanwhile);
            substitute::click(button());
        });
    }
    void test_meanwhile(const std::function<void()>& meanwhile) {
        then_click(test_button, "gethostbyname", meanwhile);
    }
    void scan_meanwhile(const std::function<void()>& meanwhile) {
        then_click(scan_button, "socket", meanwhile);
    }
};

TEST_F(ImpatientUser, GetsOneTestForManyClicks) {
    test_meanwhile([] {
        for (int click = 0; click < 3; ++click)
            substitute::click(test_button());
    });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Error testing connection"));
}

TEST_F(ImpatientUser, ReadsTheResultBeforeEnterDismissesIt) {
    test_meanwhile([] {
        substitute::press(VK_RETURN);
        substitute::press(VK_SPACE);
    });
    bool waits = true;
    boxes.while_shown([&] { waits = substitute::input_waits(); });
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(waits);
    EXPECT_THAT(boxes.captions(), ElementsAre("Error testing connection"));
}

TEST_F(ImpatientUser, ReadsThatAPortIsNoNumberBeforeEnterDismissesIt) {
    set_text(agent_key, "Servers", "alpha,beta:x");
    test_meanwhile([] { substitute::press(VK_RETURN); });
    bool waits = true;
    boxes.while_shown([&] { waits = substitute::input_waits(); });
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(waits);
}

TEST_F(ImpatientUser, ReadsWhyAScanFailedBeforeEnterDismissesIt) {
    scan_meanwhile([] {
        substitute::press(VK_RETURN);
        substitute::click(scan_button());
    });
    std::vector<bool> waits;
    for (int box = 0; box < 2; ++box)
        boxes.while_shown([&] { waits.push_back(substitute::input_waits()); });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(waits, ElementsAre(false, false));
    EXPECT_THAT(boxes.captions(),
                ElementsAre("Error scanning for Tavrin Servers", "No Tavrin Servers Found"));
}

TEST_F(ImpatientUser, DoesNotWriteAListThatNobodyHasSeen) {
    substitute::fail_call("socket", 0);
    loopback::DiscoveryServer server([](int) {
        return std::vector<loopback::Answer>{{9, loopback::discovery_answer()}};
    });
    substitute::set_interfaces({{htonl(0x7F000001), 0xFFFFFFFF}});
    set_text(agent_key, "Port", std::to_string(server.port()));
    then([] { SetWindowTextA(page_controls().at(0), "typed"); });
    scan_meanwhile([] { substitute::click(control(ok_id)); });
    std::string found;
    then([&] { found = text_of(page_controls().at(0)); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(found, "127.0.0.9");
    EXPECT_EQ(text_value(agent_key, "Servers"), "alpha,beta");
}

TEST_F(ImpatientUser, DoesNotCloseTheWindowByItsFrame) {
    bool there = false;
    test_meanwhile([] { substitute::click_frame(main_window, HTCLOSE); });
    then([&] { there = IsWindow(main_window) != FALSE; });
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(there);
    EXPECT_THAT(boxes.captions(), ElementsAre("Error testing connection"));
}

TEST_F(ImpatientUser, LosesNothingElse) {
    std::vector<UINT> waiting;
    test_meanwhile([] {
        substitute::click(test_button());
        PostMessageA(main_window, WM_APP + 7, 0, 0);
        PostMessageA(control(tree_id), WM_SETFONT, 0, 0);
    });
    substitute::when_called("MessageBoxA", [&] {
        MSG message{};
        for (const UINT number : {UINT{WM_APP + 7}, UINT{WM_SETFONT}}) {
            if (PeekMessageA(&message, main_window, number, number, PM_REMOVE))
                waiting.push_back(message.message);
        }
    });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(waiting, ElementsAre(WM_APP + 7, WM_SETFONT));
}

TEST_F(ImpatientUser, GetsOneResultForManyClicksThatNoServerKeepsWaiting) {
    set_text(agent_key, "Servers", "");
    then([] {
        for (int click = 0; click < 4; ++click)
            substitute::click(test_button());
    });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Connection test successful"));
}

TEST_F(ImpatientUser, ReadsTheResultAlsoWhenNoWaitWindowCouldBeShown) {
    then([] { substitute::fail_every_call("RegisterClassExA", ERROR_NOT_ENOUGH_MEMORY); });
    test_meanwhile([] { substitute::click(test_button()); });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Error!", "Error!", "Error testing connection"));
}

} // namespace
