#include "service/apply.h"

#include "service/agent_service.h"

void apply(const Changes& changes, RestartDialogue& dialogue) {
    if (changes.service_name.empty() || !changes.any()) {
        changes.write();
        return;
    }
    AgentService service(changes.service_name, dialogue);
    service.offer_stop(changes.stop_limit);
    changes.write();
    service.offer_start(changes.start_limit);
}
