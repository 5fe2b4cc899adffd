// OK with the real service manager. The tour meets the agent's other states: absent, stopped, refusing to
// stop, unable to start, and a restart that is declined.
#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class Apply : public Sample {
protected:
    /// Changes the agent's name to "web2" and presses OK.
    static void change_and_press_ok(Tool& tool) {
        bring_to_front(tool.window());
        tool.select(agent_name);
        replace_text(tool.page("Agent name").controls[0], "web2");
        tool.expect_changes(true);
        tool.press(ok_id);
    }
    static void expect_written(Tool& tool) {
        EXPECT_EQ(tool.exit_code(), 0u);
        EXPECT_EQ(read_value(agent_key, "AgentName"), "web2");
        expect_agent(SERVICE_RUNNING);
    }
};

TEST_F(Apply, StoppedServiceIsStartedWithTheNewValue) {
    install_agent();
    Tool tool;
    change_and_press_ok(tool);
    const Box box = tool.box();
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web2") << "values are written before the question";
    EXPECT_EQ(box.caption, "Start Tavrin Agent service?");
    box.press(IDYES);
    expect_written(tool);
    EXPECT_THAT(agent_notes(), HasSubstr("setting AgentName=web2"));
}

TEST_F(Apply, RunningServiceIsRestartedAlthoughTheWindowAndTheSessionAreToldToEnd) {
    install_agent("--stop-seconds 3");
    start_agent();
    Tool tool;
    const HWND window = tool.window();
    EXPECT_EQ(send(window, WM_QUERYENDSESSION), TRUE);
    change_and_press_ok(tool);
    const Box question = tool.box();
    EXPECT_EQ(question.caption, "Restart Tavrin Agent Service?");
    EXPECT_FALSE(IsWindowEnabled(window));
    send(window, WM_CLOSE);
    EXPECT_TRUE(IsWindow(window));
    question.press(IDYES);
    const HWND waiting = tool.wait_window();
    EXPECT_EQ(text_of(waiting), "Tavrin Service Control");
    EXPECT_EQ(text_of(GetDlgItem(waiting, 106)), "Please wait while stopping service....");
    EXPECT_EQ(send(window, WM_QUERYENDSESSION), FALSE);
    PostMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web1")
        << "nothing is written before the service has stopped";
    expect_written(tool);
    EXPECT_THAT(tool.errors(), HasSubstr("Stopping service"));
    const std::string notes = agent_notes();
    EXPECT_THAT(notes, HasSubstr("setting AgentName=web1"));
    EXPECT_THAT(notes, HasSubstr("stopping\nstopped\nsetting AgentName=web2"));
    EXPECT_THAT(notes, EndsWith("started\n"));
}

} // namespace
} // namespace e2e
