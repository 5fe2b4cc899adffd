#include "e2e/input.h"
#include "e2e/tour_steps/show.h"
#include "e2e/tour_steps/steps.h"
#include "e2e/wait.h"
#include "e2e/window.h"

namespace e2e {
namespace {

void enter_servers(Tool& tool, const std::string& servers) {
    tool.select({"Tavrin Agent", "Servers", "Server list"});
    replace_text(tool.page("Server list").controls[0], servers);
}

void enter_port(Tool& tool, const std::string& port) {
    tool.select({"Tavrin Agent", "Servers", "Port"});
    replace_text(tool.page("Port").controls[0], port);
}

} // namespace

void test_the_connection(Tool& tool) {
    say("the connection test succeeds");
    enter_servers(tool, "10.9.0.2:5004");
    press_with_picture(tool.control(test_connection), "connection-test-pressed");
    tool.wait_window();
    picture("connection-test-waits");
    answer_box(
        tool, "connection-test-success", "Connection test successful",
        "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able to check in, once "
        "started",
        IDOK);
    say("the connection test fails for two reasons");
    enter_servers(tool, "10.9.0.2:5001,10.9.0.2,10.9.1.9:5002");
    tool.press(test_connection);
    answer_box(
        tool, "connection-test-failure", "Error testing connection",
        "The connection to the server \"10.9.0.2\" at port 5001 failed. The reason was:\n\n"
        "Tavrin Server rejected us: Unknown agent\n\n"
        "The connection to the server \"10.9.1.9\" at port 5002 failed. The reason was:\n\n"
        "Tavrin Server does not support our protocol version. Upgrade the Tavrin Server, or downgrade the "
        "Tavrin Agent.",
        IDOK);
    say("a port that is no number stops the connection test");
    enter_servers(tool, "10.9.0.2:many");
    tool.press(test_connection);
    answer_box(
        tool, "connection-test-bad-port", "Error testing connection",
        "The server port \"many\" for the server \"10.9.0.2\" cannot be parsed as a number. Please correct "
        "this before testing the connection.",
        IDOK);
}

void scan_for_servers(Tool& tool) {
    say("a scan at a port where nobody answers keeps the list");
    enter_port(tool, "5001");
    tool.select({"Tavrin Agent", "Servers", "Server list"});
    tool.press_on_page("Server list", "Scan");
    answer_box(tool, "scan-found-nobody", "No Tavrin Servers Found", "No Tavrin Servers found at port 5001",
               IDOK);
    enter_port(tool, "5000");

    say("a scan finds the servers of two networks");
    tool.select({"Tavrin Agent", "Servers", "Server list"});
    press_with_picture(tool.page_button("Server list", "Scan"), "scan-pressed");
    tool.wait_window();
    picture("scan-waits");
    const HWND list = tool.page("Server list").controls[0];
    wait_for("the servers that answered", [&] {
        const std::string found = text_of(list);
        return found == "10.9.0.2,10.9.1.9" || found == "10.9.1.9,10.9.0.2";
    });
    picture_of(tool, "scan-found");
}

} // namespace e2e
