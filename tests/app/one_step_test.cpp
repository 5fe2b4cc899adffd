// What happens before the program's loop has had a turn.
#include "app/main_window_controls.h"
#include "support/program.h"
#include "support/registry.h"

#include <gmock/gmock.h>

namespace {

constexpr char edited[] =
    "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
    "!All\n$Name\nName\nh\nString\n$List\nList\nh\nServerList\n$Port\nPort\nh\nInteger\n"
    "$Test\n\nh\nConnectionTest\nName\nName\nList\nPort\n";

class OneStep : public ProgramTest {
protected:
    /// Types into the shown page and presses a button of the main window, with no message in between.
    void then_edit_and_press(const std::string& text, int button) {
        then([=] {
            SetWindowTextA(page_controls().at(0), text.c_str());
            SendMessageA(control(button), BM_CLICK, 0, 0);
        });
    }
};

TEST_F(OneStep, TheConnectionTestTakesWhatWasJustTyped) {
    spec_file("A", edited);
    set_text(agent_key, "Port", "5000");
    then([] { select("List"); });
    then_edit_and_press("localhost:x", test_connection_id);
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].text,
              "The server port \"x\" for the server \"localhost\" cannot be parsed as a number. "
              "Please correct this before testing the connection.");
}

TEST_F(OneStep, OkOfAConfigurationWithoutServiceWritesWhatTheLastUpdateTook) {
    spec_file("A", edited);
    set_text(agent_key, "Name", "web1");
    then_edit("Name", "web2");
    then_edit_and_press("web3", ok_id);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "Name"), "web2");
}

TEST_F(OneStep, APageThatIsLeftAtOnceKeepsWhatWasJustTyped) {
    spec_file("A", edited);
    set_text(agent_key, "Name", "web1");
    then([] { select("Name"); });
    then([] {
        SetWindowTextA(page_controls().at(0), "web2");
        select("All");
    });
    then([] { EXPECT_EQ(text_of(control(close_id)), "Cancel"); });
    then([] { SendMessageA(control(ok_id), BM_CLICK, 0, 0); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, "Name"), "web2");
}

} // namespace
