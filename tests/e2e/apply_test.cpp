#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr char restart_caption[] = "Restart Tavrin Agent Service?";
constexpr char restart_text[] = "The Tavrin Agent Service is currently started. In order for the changes to "
                                "be effectuated, the service will "
                                "have to be restarted. Do you wish to do this now?";
constexpr char start_caption[] = "Start Tavrin Agent service?";
constexpr char start_text[] = "The Tavrin Agent service is stopped. Do you want to start it?";

/// Applies one change, the agent's name, while the agent is in one state or another.
class Apply : public Sample {
protected:
    /// Changes the name to "web2" and presses OK.
    void change_and_press_ok(Tool& tool) {
        bring_to_front(tool.window());
        tool.select(agent_name);
        replace_text(tool.page("Agent name").controls[0], "web2");
        tool.expect_changes(true);
        tool.press(ok_id);
    }

    void expect_box(Tool& tool, const std::string& caption, const std::string& text, int answer) {
        const Box box = tool.box();
        EXPECT_EQ(box.caption, caption);
        EXPECT_EQ(box.text, text);
        box.press(answer);
    }

    void expect_written(Tool& tool) {
        EXPECT_EQ(tool.exit_code(), 0u);
        EXPECT_EQ(read_value(agent_key, "AgentName"), "web2");
    }
};

TEST_F(Apply, AbsentServiceAsksForAManualRestart) {
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, "Service must be restarted manually",
               "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
               "effectuated, you will have to restart the Tavrin Agent service manually.",
               IDOK);
    expect_written(tool);
    EXPECT_THAT(tool.errors(), HasSubstr("Unable to find agent service"));
}

TEST_F(Apply, StoppedServiceIsStartedWhenTheUserWantsIt) {
    install_agent();
    Tool tool;
    change_and_press_ok(tool);
    const Box box = tool.box();
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web2") << "values are written before the question";
    EXPECT_EQ(box.caption, start_caption);
    EXPECT_EQ(box.text, start_text);
    box.press(IDYES);
    expect_written(tool);
    expect_agent(SERVICE_RUNNING);
    EXPECT_THAT(agent_notes(), HasSubstr("setting AgentName=web2"));
}

TEST_F(Apply, StoppedServiceStaysStoppedWhenTheUserWantsIt) {
    install_agent();
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, start_caption, start_text, IDNO);
    expect_written(tool);
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_STOPPED));
    EXPECT_EQ(agent_notes(), "");
}

TEST_F(Apply, RunningServiceIsRestartedWithTheNewValue) {
    install_agent();
    start_agent();
    Tool tool;
    change_and_press_ok(tool);
    const Box box = tool.box();
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web1")
        << "nothing is written before the service has stopped";
    EXPECT_FALSE(IsWindowEnabled(tool.window()));
    EXPECT_EQ(box.caption, restart_caption);
    EXPECT_EQ(box.text, restart_text);
    box.press(IDYES);
    expect_written(tool);
    expect_agent(SERVICE_RUNNING);
    EXPECT_THAT(tool.errors(), HasSubstr("Stopping service"));
    const std::string notes = agent_notes();
    EXPECT_THAT(notes, HasSubstr("setting AgentName=web1"));
    EXPECT_THAT(notes, HasSubstr("stopping\nstopped\nsetting AgentName=web2"));
    EXPECT_THAT(notes, EndsWith("started\n"));
}

TEST_F(Apply, DeclinedRestartWritesAndSaysThatNothingWasRestarted) {
    install_agent();
    start_agent();
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, restart_caption, restart_text, IDNO);
    expect_box(
        tool, "Error restarting service",
        "The service could not be automatically restarted. Please start the Tavrin Agent service manually.",
        IDOK);
    expect_written(tool);
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_RUNNING));
    EXPECT_THAT(agent_notes(), testing::Not(HasSubstr("stopping")));
}

TEST_F(Apply, SlowStopShowsTheWaitWindow) {
    install_agent("--stop-seconds 3");
    start_agent();
    Tool tool;
    change_and_press_ok(tool);
    const HWND main_window = tool.window();
    expect_box(tool, restart_caption, restart_text, IDYES);
    const HWND waiting = tool.wait_window();
    EXPECT_EQ(text_of(waiting), "Tavrin Service Control");
    EXPECT_EQ(text_of(GetDlgItem(waiting, 106)), "Please wait while stopping service....");
    RECT area = {};
    RECT around = {};
    GetWindowRect(waiting, &area);
    GetWindowRect(main_window, &around);
    EXPECT_EQ(area.right - area.left, 200);
    EXPECT_EQ(area.bottom - area.top, 75);
    EXPECT_EQ(area.left, around.left + (around.right - around.left - 200) / 2);
    EXPECT_EQ(area.top, around.top + (around.bottom - around.top - 75) / 2);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "web1");
    expect_written(tool);
    expect_agent(SERVICE_RUNNING);
}

TEST_F(Apply, RefusedStopIsReportedAndTheValueWritten) {
    install_agent("--refuse-stop");
    start_agent();
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, restart_caption, restart_text, IDYES);
    expect_box(
        tool, "Stopping service failed",
        "Failed to stop service. You will have to restart the service manually, in order to effectuate the "
        "changes",
        IDOK);
    expect_box(
        tool, "Error restarting service",
        "The service could not be automatically restarted. Please start the Tavrin Agent service manually.",
        IDOK);
    expect_written(tool);
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_RUNNING));
}

TEST_F(Apply, FailedStartIsReported) {
    install_agent("--fail-start");
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, start_caption, start_text, IDYES);
    expect_box(tool, "Error starting service",
               "The service could not be started. Please start the Tavrin Agent service manually.", IDOK);
    expect_written(tool);
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_STOPPED));
}

TEST_F(Apply, FailedStartAfterAStopIsReported) {
    install_agent();
    start_agent();
    install_agent("--fail-start");
    Tool tool;
    change_and_press_ok(tool);
    expect_box(tool, restart_caption, restart_text, IDYES);
    expect_box(tool, "Error starting service",
               "The service could not be started. Please start the Tavrin Agent service manually.", IDOK);
    expect_written(tool);
}

TEST_F(Apply, ServiceOfAnUnchangedConfigurationIsLeftAlone) {
    install_agent();
    start_agent();
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tray Icon", "Tray icon", "Show icon"});
    toggle(tool.page("Show icon").controls[0]);
    tool.expect_changes(true);
    tool.press(ok_id);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(agent_state(), static_cast<DWORD>(SERVICE_RUNNING));
    EXPECT_THAT(agent_notes(), EndsWith("started\n"));
}

} // namespace
} // namespace e2e
