#include "app/commands.h"

#include "app/apply_changes.h"
#include "app/main_window_state.h"
#include "app/test_connection.h"
#include "spec/configurations.h"

void apply_and_close(HWND window) {
    EnableWindow(window, FALSE);
    for (const auto& [name, configuration] : configurations)
        apply_changes(*configuration);
    DestroyWindow(window);
}

void test_connection() {
    if (main_window_state.tested == nullptr)
        return;
    const Configuration& tested = *main_window_state.tested;
    if (tested.shown_entry != nullptr)
        tested.shown_entry->takeValue();
    const std::string agent_name = tested.text_by_title(tested.agent_name_title);
    const std::string agent_domain = tested.text_by_title(tested.agent_domain_title);
    const std::string server_list = tested.text_by_title(tested.server_list_title);
    const auto default_port = static_cast<std::uint16_t>(tested.integer_by_title(tested.default_port_title));
    testConnection(agent_name, agent_domain, server_list, default_port);
}
