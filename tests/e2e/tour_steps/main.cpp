/// The whole job in the finished program's window, step by step with a picture of each. Run by
/// tests/e2e/tour, which takes a picture whenever this program prints "picture NAME" and then sends the line
/// "taken" back.
#include "e2e/agent.h"
#include "e2e/input.h"
#include "e2e/process.h"
#include "e2e/tour_steps/show.h"
#include "e2e/tour_steps/steps.h"

#include <exception>
#include <iostream>

namespace e2e {
namespace {

void print_registry(const std::string& when) {
    std::cout << "registry " << when << ":\n"
              << run("reg.exe query HKLM\\SOFTWARE\\Tavrin\\Agent") << std::flush;
}

void change_one_and_cancel() {
    Tool tool;
    bring_to_front(tool.window());
    picture_of(tool, "opened");
    edit_a_setting(tool);
    cancel(tool);
}

/// From an opened window to the restarted agent.
void do_the_job() {
    install_agent("--stop-seconds 4");
    start_agent();
    show_the_whole_tree();
    change_one_and_cancel();
    Tool tool;
    bring_to_front(tool.window());
    show_every_kind_of_page(tool);
    show_the_systems_dialogs(tool);
    change_the_name(tool);
    test_the_connection(tool);
    scan_for_servers(tool);
    signal_the_agent(tool);
    save_and_restart(tool);
}

/// What else OK may lead to.
void meet_the_agent_in_every_state() {
    save_without_a_restart();
    remove_agent();
    save_while_the_agent_refuses_to_stop();
    remove_agent();
    save_while_the_agent_is_stopped();
    save_while_the_agent_cannot_start();
    remove_agent();
    save_without_an_agent();
}

void walk() {
    remove_agent();
    seed_registry();
    print_registry("before");
    do_the_job();
    meet_the_agent_in_every_state();
    print_registry("after");
    start_with_an_unknown_type();
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
