// Another process selects an item while the page of a button waits for what that button brings.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/discovery_server.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

constexpr char finding_spec[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
                                "!All\n$Name\nName\nh\nString\n$Servers\nServers\nh\nServerList\n"
                                "$Port\nPort\nh\nInteger\n$Folder\nFolder\nh\nDirectory\n"
                                "$File\nFile\nh\nFile\nlog\n";

class LeftPage : public ProgramTest {
protected:
    void SetUp() override {
        spec_file("A", finding_spec);
        for (const char* name : {"Name", "Servers", "Folder", "File"})
            set_text(agent_key, name, "old");
    }
    /// Presses the button of the page, which is left for that of `next` before anything is found.
    void press_and_leave(const std::string& title, const std::string& next) {
        then([title] { select(title); });
        then([next] {
            PostMessageA(control(tree_id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item(next)));
            SendMessageA(page_controls().at(1), BM_CLICK, 0, 0);
        });
    }
    /// The texts of the buttons, and what the page shows when it is opened again.
    void expect_untouched(const std::string& title) {
        then([] {
            EXPECT_EQ(text_of(control(close_id)), "Close");
            EXPECT_FALSE(IsWindowEnabled(control(ok_id)));
        });
        then([title] { select(title); });
        then([] { EXPECT_EQ(text_of(page_controls().at(0)), "old"); });
        EXPECT_EQ(run(), 0);
    }
};

TEST_F(LeftPage, GetsNoFile) {
    substitute::choose_next_file("C:\\new.log");
    press_and_leave("File", "Name");
    expect_untouched("File");
}

TEST_F(LeftPage, GetsNoFolder) {
    substitute::choose_next_folder({.clicked = {"C:\\new"}});
    press_and_leave("Folder", "Name");
    expect_untouched("Folder");
}

TEST_F(LeftPage, ThatIsShownAgainGetsItsFile) {
    substitute::choose_next_file("C:\\new.log");
    then([] { select("File"); });
    then([] {
        for (const char* next : {"Name", "File"})
            PostMessageA(control(tree_id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item(next)));
        SendMessageA(page_controls().at(1), BM_CLICK, 0, 0);
    });
    then([] {
        EXPECT_EQ(text_of(page_controls().at(0)), "C:\\new.log");
        EXPECT_EQ(text_of(control(close_id)), "Cancel");
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeftPage, GetsNoServers) {
    loopback::DiscoveryServer server([](int) {
        return std::vector<loopback::Answer>{{9, loopback::discovery_answer()}};
    });
    substitute::set_interfaces({{htonl(0x7F000001), 0xFFFFFFFF}});
    set_text(agent_key, "Port", std::to_string(server.port()));
    then([] { select("Servers"); });
    then([] {
        // The wait window looks into the queue when it closes.
        substitute::when_called("sendto",
                                [] { substitute::when_called("PeekMessageA", [] { select("Name"); }); });
        SendMessageA(page_controls().at(1), BM_CLICK, 0, 0);
    });
    then([] { EXPECT_EQ(text_of(page()), "Name"); });
    expect_untouched("Servers");
}

TEST_F(LeftPage, GetsNothingWhenTheWindowIsGone) {
    substitute::choose_next_file("C:\\new.log");
    then([] { select("File"); });
    then([] {
        PostMessageA(main_window, WM_CLOSE, 0, 0);
        SendMessageA(page_controls().at(1), BM_CLICK, 0, 0);
    });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "File"), "old");
}

} // namespace
