#pragma once
/// The tour's chapters. Each throws std::runtime_error when something is not as it should be.
#include "e2e/tool.h"

namespace e2e {

/// Pages: the whole tree, a changed setting, one page of each kind, the system's dialogs.
void show_the_whole_tree();
void edit_a_setting(Tool& tool);
void change_the_name(Tool& tool);
void cancel(Tool& tool);
void show_every_kind_of_page(Tool& tool);
void show_the_systems_dialogs(Tool& tool);

/// Servers: connection tests and scans.
void test_the_connection(Tool& tool);
void scan_for_servers(Tool& tool);

/// The agent: the signal, and OK in every state that the service can be in.
void signal_the_agent(Tool& tool);
void save_and_restart(Tool& tool);
void save_without_a_restart();
void save_while_the_agent_refuses_to_stop();
void save_while_the_agent_is_stopped();
void save_while_the_agent_cannot_start();
void save_without_an_agent();

/// Registries and spec files that something is wrong with.
void start_with_an_unknown_type();
void start_without_a_configuration();

} // namespace e2e
