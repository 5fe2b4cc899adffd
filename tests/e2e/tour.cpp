/// The whole job in the finished program's window, step by step with a picture of each. Run by script/run,
/// which takes a picture whenever this program prints "picture NAME" and then sends a line back.
#include "e2e/agent.h"
#include "e2e/input.h"
#include "e2e/process.h"
#include "e2e/tool.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

namespace e2e {
namespace {

constexpr char kAgentKey[] = "SOFTWARE\\Tavrin\\Agent";

/// Has a picture taken and waits until it is.
void picture(const std::string& name) {
    static int number = 0;
    char numbered[256];
    std::snprintf(numbered, sizeof numbered, "%02d-%s", ++number, name.c_str());
    std::cout << "picture " << numbered << std::endl;
    std::string line;
    if (!std::getline(std::cin, line) || line != "taken")
        throw std::runtime_error("no picture " + name + " was taken");
}

void say(const std::string& text) { std::cout << "tour: " << text << std::endl; }

void expect(const std::string& what, const std::string& found, const std::string& expected) {
    if (found != expected)
        throw std::runtime_error(what + " is \"" + found + "\" and not \"" + expected + "\"");
}

void picture_of(HWND window, const std::string& name) {
    wait_for("the painting of " + name, [&] { return is_painted(window); });
    picture(name);
}

void window_picture(Tool& tool, const std::string& name) { picture_of(tool.window(), name); }

/// Checks a box, takes its picture and answers it.
void answer_box(Tool& tool, const std::string& name, const std::string& caption, const std::string& text,
                int answer) {
    const Box box = tool.box();
    expect("the caption", box.caption, caption);
    expect("the text", box.text, text);
    picture_of(box.window, name);
    box.press(answer);
}

/// Presses a button as slowly as a person, with a picture of it, so that the program has shown all it drew
/// before.
void press_with_picture(HWND button, const std::string& name) {
    hold_down(button);
    wait_for("the pressed button", [&] { return (send(button, BM_GETSTATE) & BST_PUSHED) != 0; });
    picture(name);
    let_go(button);
}

void show_page(Tool& tool, const TreePath& path, const std::string& name) {
    tool.select(path);
    window_picture(tool, name);
}

void show_every_kind_of_page(Tool& tool) {
    say("every kind of page");
    const std::string root = "Tavrin Agent";
    show_page(tool, {root, "Identity", "Agent domain"}, "page-text");
    show_page(tool, {root, "Identity", "Data folder"}, "page-folder");
    show_page(tool, {root, "Identity", "Log file"}, "page-file");
    show_page(tool, {root, "Servers", "Server list"}, "page-server-list");
    show_page(tool, {root, "Servers", "Port"}, "page-number");
    show_page(tool, {root, "Measuring", "Compress reports"}, "page-yes-or-no");
    show_page(tool, {root, "Measuring", "Detail"}, "page-choice");
    show_page(tool, {root, "Measuring", "Modem port"}, "page-serial-port");
    show_page(tool, {root, "Maintenance", "Measure now"}, "page-signal");
    show_page(tool, {root, "Maintenance", "Forget the servers' certificates"}, "page-key-removal");
    show_page(tool, {"Legacy Agent", "Retries"}, "page-of-an-old-spec-file");
    show_page(tool, {"Tray Icon", "Tray icon", "Language"}, "page-without-a-connection-test");
}

void edit_a_setting(Tool& tool) {
    say("a setting is opened and changed");
    tool.select({"Tavrin Agent", "Identity", "Agent name"});
    tool.expect_changes(false);
    window_picture(tool, "setting-opened");
    replace_text(tool.page("Agent name").controls[0], "web2");
    tool.expect_changes(true);
    window_picture(tool, "setting-changed");
}

void set_servers(Tool& tool, const std::string& servers) {
    tool.select({"Tavrin Agent", "Servers", "Server list"});
    replace_text(tool.page("Server list").controls[0], servers);
}

void test_the_connection(Tool& tool) {
    say("the connection test succeeds");
    set_servers(tool, "10.9.0.2:5004");
    press_with_picture(tool.control(kTestConnection), "connection-test-pressed");
    tool.wait_window();
    picture("connection-test-waits");
    answer_box(
        tool, "connection-test-success", "Connection test successful",
        "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able to check in, once "
        "started",
        IDOK);
    say("the connection test fails for two reasons");
    set_servers(tool, "10.9.0.2:5001,10.9.0.2,10.9.1.9:5002");
    tool.press(kTestConnection);
    answer_box(
        tool, "connection-test-failure", "Error testing connection",
        "The connection to the server \"10.9.0.2\" at port 5001 failed. The reason was:\n\n"
        "Tavrin Server rejected us: Unknown agent\n\n"
        "The connection to the server \"10.9.1.9\" at port 5002 failed. The reason was:\n\n"
        "Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or downgrade the "
        "Tavrin Agent.",
        IDOK);
}

void scan(Tool& tool) {
    say("a scan finds the servers of two networks");
    press_with_picture(tool.page_button("Server list", "Scan"), "scan-pressed");
    tool.wait_window();
    picture("scan-waits");
    const HWND list = tool.page("Server list").controls[0];
    wait_for("the servers that answered", [&] {
        const std::string found = text_of(list);
        return found == "10.9.0.2,10.9.1.9" || found == "10.9.1.9,10.9.0.2";
    });
    window_picture(tool, "scan-found");
}

void signal_the_agent(Tool& tool) {
    say("the agent is signalled");
    tool.select({"Tavrin Agent", "Maintenance", "Measure now"});
    tool.press_on_page("Measure now", "Execute");
    answer_box(tool, "agent-signalled", "Action taken", "The action has been taken.", IDOK);
    wait_for("the agent's note", [] { return agent_notes().find("signalled") != std::string::npos; });
}

void save_and_restart(Tool& tool) {
    say("OK saves and restarts the agent");
    tool.press(kOk);
    answer_box(
        tool, "restart-question", "Restart Tavrin Agent Service?",
        "The Tavrin Agent Service is currently started. In order for the changes to be effectuated, the "
        "service will have to be restarted. Do you wish to do this now?",
        IDYES);
    picture_of(tool.wait_window(), "agent-stops");
    expect("the exit code", std::to_string(tool.exit_code()), "0");
    expect("the saved name", read_value(kAgentKey, "AgentName"), "web2");
    expect_agent(SERVICE_RUNNING);
    if (agent_notes().find("stopped\nsetting AgentName=web2\n") == std::string::npos)
        throw std::runtime_error("the agent was not restarted with the new name");
    say("the agent runs again, with the new name");
}

void change_with_the_agent_stopped() {
    say("with the agent stopped, OK offers to start it");
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tavrin Agent", "Measuring", "Compress reports"});
    click(tool.page("Compress reports").controls[0]);
    tool.expect_changes(true);
    tool.press(kOk);
    answer_box(tool, "start-question", "Start Tavrin Agent service?",
               "The Tavrin Agent service is stopped. Do you want to start it?", IDNO);
    expect("the exit code", std::to_string(tool.exit_code()), "0");
    expect("the saved choice", read_value(kAgentKey, "Compress"), "false");
}

void change_without_an_agent() {
    say("without an agent, OK says what is left to do");
    Tool tool;
    bring_to_front(tool.window());
    tool.select({"Tavrin Agent", "Measuring", "Interval"});
    replace_text(tool.page("Interval").controls[0], "120");
    tool.expect_changes(true);
    tool.press(kOk);
    answer_box(tool, "manual-restart", "Service must be restarted manually",
               "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
               "effectuated, you will have to restart the Tavrin Agent service manually.",
               IDOK);
    expect("the exit code", std::to_string(tool.exit_code()), "0");
}

void start_without_a_configuration() {
    say("a registry without configurations ends the program");
    delete_key("SOFTWARE\\Tavrin\\TRConfig");
    Tool tool;
    answer_box(tool, "fatal-error", "Error!", "Cannot read out SOFTWARE\\Tavrin\\TRConfig", IDOK);
    expect("the exit code", std::to_string(tool.exit_code()), "1");
}

void print_registry(const std::string& when) {
    std::cout << "registry " << when << ":\n"
              << run("reg.exe query HKLM\\SOFTWARE\\Tavrin\\Agent") << std::flush;
}

void walk() {
    remove_agent();
    seed_registry();
    install_agent("--stop-seconds 4");
    start_agent();
    print_registry("before");
    {
        Tool tool;
        bring_to_front(tool.window());
        window_picture(tool, "opened");
        edit_a_setting(tool);
        show_every_kind_of_page(tool);
        test_the_connection(tool);
        scan(tool);
        signal_the_agent(tool);
        save_and_restart(tool);
    }
    print_registry("after");
    remove_agent();
    install_agent();
    change_with_the_agent_stopped();
    remove_agent();
    change_without_an_agent();
    start_without_a_configuration();
}

} // namespace
} // namespace e2e

int main() {
    try {
        e2e::walk();
    } catch (const std::exception& problem) {
        std::cout << "tour: FAILED: " << problem.what() << std::endl;
        return 1;
    }
    e2e::say("every step did what it should");
    return 0;
}
