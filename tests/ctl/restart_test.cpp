// Restarts around a change, over the substitute's scripted services: what is known before, what is finished
// later.
#include "ctl/change/journal.h"
#include "ctl/machine/service.h"
#include "ctl/program_run.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

class Restarts : public Program {
protected:
    /// As a run that ended before the service ran again leaves it.
    void leave_pending(const std::string& file) {
        std::filesystem::create_directories(scratch.path_of("data"));
        std::ofstream(scratch.path_of("data/" + file)) << "1";
    }
};

std::string state_of(DWORD state) {
    substitute::set_service("AgentService", {.state = state});
    return ctl::service_info("AgentService").state;
}

std::string start_type_of(DWORD start_type) {
    substitute::set_service("AgentService", {.start_type = start_type});
    return ctl::service_info("AgentService").start_type;
}

TEST_F(Restarts, NameTheStatesOfAService) {
    EXPECT_EQ(state_of(SERVICE_STOPPED), "stopped");
    EXPECT_EQ(state_of(SERVICE_START_PENDING), "startPending");
    EXPECT_EQ(state_of(SERVICE_STOP_PENDING), "stopPending");
    EXPECT_EQ(state_of(SERVICE_RUNNING), "running");
    EXPECT_EQ(state_of(SERVICE_CONTINUE_PENDING), "continuePending");
    EXPECT_EQ(state_of(SERVICE_PAUSE_PENDING), "pausePending");
    EXPECT_EQ(state_of(SERVICE_PAUSED), "paused");
    EXPECT_EQ(state_of(8), "unknown");
    EXPECT_EQ(ctl::service_info("Nobody").state, "missing");
    substitute::set_service("AgentService", {.open_error = ERROR_ACCESS_DENIED});
    EXPECT_EQ(ctl::service_info("AgentService").state, "unknown");
    substitute::fail_call("OpenSCManagerA");
    EXPECT_EQ(ctl::service_info("AgentService").state, "unknown");
    EXPECT_EQ(substitute::open_service_handles(), 0);
}

TEST_F(Restarts, NameTheStartTypesOfAService) {
    EXPECT_EQ(start_type_of(SERVICE_BOOT_START), "boot");
    EXPECT_EQ(start_type_of(SERVICE_SYSTEM_START), "system");
    EXPECT_EQ(start_type_of(SERVICE_AUTO_START), "automatic");
    EXPECT_EQ(start_type_of(SERVICE_DEMAND_START), "manual");
    EXPECT_EQ(start_type_of(SERVICE_DISABLED), "disabled");
    EXPECT_EQ(substitute::asked_access("AgentService"), DWORD{SERVICE_QUERY_CONFIG | SERVICE_QUERY_STATUS});
    EXPECT_EQ(ctl::service_info("Nobody").start_type, "");
}

TEST_F(Restarts, ArePendingWhileTheirFileIsThere) {
    EXPECT_FALSE(ctl::restart_is_pending("AgentService"));
    leave_pending("restart-agentservice");
    EXPECT_TRUE(ctl::restart_is_pending("AgentService"));
    EXPECT_FALSE(ctl::restart_is_pending("Agent"));
    EXPECT_FALSE(ctl::restart_is_pending(""));
    leave_pending("restart-a%3Ab%2A");
    EXPECT_TRUE(ctl::restart_is_pending("A:b*"));
}

} // namespace
