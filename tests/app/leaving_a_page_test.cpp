#include "app/main_window_controls.h"
#include "spec/configuration.h"
#include "support/program.h"
#include "support/registry.h"

#include <gmock/gmock.h>

namespace {

constexpr char left_spec[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\n"
                             "!All\n$Flag\nFlag\nh\nBoolean\n$Level\nLevel\nh\nOptions\nlow\nhigh\n";

/// A page is taken down when a node without a page is clicked; what it showed stays.
class LeavingAPage : public ProgramTest {
protected:
    /// Shows the page of `title`, clicks the group node and looks at the value and the buttons.
    void expect_unchanged(const std::string& title, const std::string& value) {
        spec_file("A", left_spec);
        set_text(agent_key, title, value);
        then([=] { select(title); });
        then([] { select("All"); });
        then([=] {
            EXPECT_EQ(page(), nullptr);
            EXPECT_EQ(configurations.at("Agent")->text_by_title(title), value);
            EXPECT_EQ(text_of(control(close_id)), "Close");
            EXPECT_FALSE(IsWindowEnabled(control(ok_id)));
        });
    }
};

TEST_F(LeavingAPage, ForAGroupKeepsATickedBoxAndTheButtonSaysClose) {
    expect_unchanged("Flag", "true");
    then([] { select("Flag"); });
    then([] { EXPECT_EQ(SendMessageA(page_controls().at(0), BM_GETCHECK, 0, 0), BST_CHECKED); });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingAPage, ForAGroupKeepsAChoiceAndTheButtonSaysClose) {
    expect_unchanged("Level", "high");
    then([] { select("Level"); });
    then([] { EXPECT_EQ(SendMessageA(page_controls().at(0), CB_GETCURSEL, 0, 0), 1); });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingAPage, ForTheConfigurationKeepsAnEdit) {
    spec_file("A", left_spec);
    set_text(agent_key, "Flag", "true");
    then([] { select("Flag"); });
    then([] { SendMessageA(page_controls().at(0), BM_CLICK, 0, 0); });
    then([] { select("Agent"); });
    then([] {
        EXPECT_EQ(configurations.at("Agent")->text_by_title("Flag"), "false");
        EXPECT_EQ(text_of(control(close_id)), "Cancel");
        EXPECT_TRUE(IsWindowEnabled(control(ok_id)));
    });
    EXPECT_EQ(run(), 0);
}

} // namespace
