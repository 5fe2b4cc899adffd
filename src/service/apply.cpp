#include "service/apply.h"

#include "service/agent_service.h"

namespace {

void write_changed_entries(Configuration& configuration) {
    for (const auto& [item, entry] : configuration.entry_items) {
        if (entry->changed())
            entry->write();
    }
    configuration.changed_entries.clear();
}

} // namespace

void apply(Configuration& configuration) {
    // Without a service nothing is read from the controls again: the values of the last button update stand.
    if (configuration.serviceName.empty() || !configuration.has_changes()) {
        write_changed_entries(configuration);
        return;
    }
    AgentService service(configuration.name, configuration.serviceName);
    if (service.found()) {
        service.offer_stop();
    } else {
        service.ask_for_manual_restart();
    }
    write_changed_entries(configuration);
    service.offer_start();
}
