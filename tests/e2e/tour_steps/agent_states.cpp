#include "e2e/agent.h"
#include "e2e/input.h"
#include "e2e/tour_steps/show.h"
#include "e2e/tour_steps/steps.h"
#include "e2e/wait.h"

namespace e2e {
namespace {

constexpr char agent_key[] = "SOFTWARE\\Tavrin\\Agent";
constexpr char not_restarted[] =
    "The service could not be automatically restarted. Please start the Tavrin Agent service manually.";

void answer_restart_question(Tool& tool, const std::string& name, int answer) {
    answer_box(
        tool, name, "Restart Tavrin Agent Service?",
        "The Tavrin Agent Service is currently started. In order for the changes to be effectuated, the "
        "service will have to be restarted. Do you wish to do this now?",
        answer);
}

void answer_start_question(Tool& tool, const std::string& name, int answer) {
    answer_box(tool, name, "Start Tavrin Agent service?",
               "The Tavrin Agent service is stopped. Do you want to start it?", answer);
}

/// Opens the program, changes the interval and presses OK.
void change_interval(Tool& tool, const std::string& seconds) {
    bring_to_front(tool.window());
    tool.select({"Tavrin Agent", "Measuring", "Interval"});
    replace_text(tool.page("Interval").controls[0], seconds);
    tool.expect_changes(true);
    tool.press(ok_id);
}

void expect_saved(Tool& tool, const std::string& seconds) {
    expect_end(tool, 0);
    expect("the saved interval", read_value(agent_key, "Interval"), seconds);
}

} // namespace

void signal_the_agent(Tool& tool) {
    say("the agent is signalled");
    tool.select({"Tavrin Agent", "Maintenance", "Measure now"});
    tool.press_on_page("Measure now", "Execute");
    answer_box(tool, "agent-signalled", "Action taken", "The action has been taken.", IDOK);
    wait_for("the agent's note", [] { return agent_notes().find("signalled") != std::string::npos; });
}

void save_and_restart(Tool& tool) {
    say("OK saves and restarts the agent");
    tool.select({"Tavrin Agent", "Identity", "Agent name"});
    tool.press(ok_id);
    answer_restart_question(tool, "restart-question", IDYES);
    picture_of(tool.wait_window(), "agent-stops");
    expect_end(tool, 0);
    expect("the saved name", read_value(agent_key, "AgentName"), "web2");
    expect_agent(SERVICE_RUNNING);
    if (agent_notes().find("stopped\nsetting AgentName=web2\n") == std::string::npos)
        throw std::runtime_error("the agent was not restarted with the new name");
    say("the agent runs again, with the new name");
}

void save_without_a_restart() {
    say("without a restart, OK saves and says that nothing was restarted");
    Tool tool;
    change_interval(tool, "90");
    answer_restart_question(tool, "restart-declined", IDNO);
    answer_box(tool, "not-restarted", "Error restarting service", not_restarted, IDOK);
    expect_saved(tool, "90");
}

void save_while_the_agent_refuses_to_stop() {
    say("with an agent that refuses to stop, OK saves and says so");
    install_agent("--refuse-stop");
    start_agent();
    Tool tool;
    change_interval(tool, "120");
    answer_restart_question(tool, "restart-of-an-agent-that-refuses", IDYES);
    answer_box(
        tool, "stop-failed", "Stopping service failed",
        "Failed to stop service. You will have to restart the service manually, in order to effectuate the "
        "changes",
        IDOK);
    answer_box(tool, "not-restarted-after-failed-stop", "Error restarting service", not_restarted, IDOK);
    expect_saved(tool, "120");
}

void save_while_the_agent_is_stopped() {
    say("with the agent stopped, OK saves and offers to start it");
    install_agent();
    Tool tool;
    change_interval(tool, "150");
    answer_start_question(tool, "start-question", IDNO);
    expect_saved(tool, "150");
}

void save_while_the_agent_cannot_start() {
    say("with an agent that cannot start, OK saves and says so");
    install_agent("--fail-start");
    Tool tool;
    change_interval(tool, "180");
    answer_start_question(tool, "start-question-for-an-agent-that-cannot", IDYES);
    answer_box(tool, "start-failed", "Error starting service",
               "The service could not be started. Please start the Tavrin Agent service manually.", IDOK);
    expect_saved(tool, "180");
}

void save_without_an_agent() {
    say("without an agent, OK saves and says what is left to do");
    Tool tool;
    change_interval(tool, "210");
    answer_box(tool, "manual-restart", "Service must be restarted manually",
               "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
               "effectuated, you will have to restart the Tavrin Agent service manually.",
               IDOK);
    expect_saved(tool, "210");
}

} // namespace e2e
