#include "platform/win32.h"
#include "substitute/control.h"
#include "support/clean_system.h"

#include <gmock/gmock.h>

namespace {

using substitute::fail_call;
using substitute::ServiceScript;

/// A handle of the service under script; both handles are closed at the end of every test.
class ScriptedServices : public CleanSystem {
protected:
    void install(const ServiceScript& script) {
        substitute::set_service("Agent", script);
        manager_ = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
        service_ = OpenServiceA(manager_, "agent", SERVICE_ALL_ACCESS);
    }
    ~ScriptedServices() override {
        EXPECT_EQ(service_ != nullptr, CloseServiceHandle(service_) != FALSE);
        EXPECT_TRUE(CloseServiceHandle(manager_));
        EXPECT_EQ(substitute::open_service_handles(), 0);
    }
    bool stop() { return ControlService(service_, SERVICE_CONTROL_STOP, &status_) != FALSE; }
    bool start() { return StartServiceA(service_, 0, nullptr) != FALSE; }
    /// The state that a query returns; 0 if the query fails.
    DWORD state() { return QueryServiceStatus(service_, &status_) != FALSE ? status_.dwCurrentState : 0; }

    SC_HANDLE manager_ = nullptr;
    SC_HANDLE service_ = nullptr;
    SERVICE_STATUS status_{};
};

TEST_F(ScriptedServices, RunStopAndRunAgain) {
    install({});
    EXPECT_EQ(state(), SERVICE_RUNNING);
    EXPECT_EQ(status_.dwControlsAccepted, SERVICE_ACCEPT_STOP);
    EXPECT_FALSE(start());
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_ALREADY_RUNNING});
    EXPECT_TRUE(stop());
    EXPECT_EQ(status_.dwCurrentState, SERVICE_STOPPED);
    EXPECT_FALSE(stop());
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_TRUE(start());
    EXPECT_EQ(state(), SERVICE_RUNNING);
    const auto counts = substitute::service_counts("AGENT");
    EXPECT_EQ(counts.queries, 2);
    EXPECT_EQ(counts.stops, 2);
    EXPECT_EQ(counts.starts, 2);
}

TEST_F(ScriptedServices, StopAndStartByTheClock) {
    ServiceScript script;
    script.stop_time = 2500;
    script.start_time = 1000;
    install(script);
    EXPECT_TRUE(stop());
    EXPECT_EQ(status_.dwCurrentState, SERVICE_STOP_PENDING);
    Sleep(2499);
    EXPECT_EQ(state(), SERVICE_STOP_PENDING);
    EXPECT_FALSE(stop());
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_CANNOT_ACCEPT_CTRL});
    Sleep(1);
    EXPECT_EQ(state(), SERVICE_STOPPED);
    EXPECT_TRUE(start());
    EXPECT_EQ(state(), SERVICE_START_PENDING);
    substitute::advance_clock(1000);
    EXPECT_EQ(substitute::service_state("Agent"), SERVICE_RUNNING);
}

TEST_F(ScriptedServices, MayVanishWhileTheyStop) {
    ServiceScript script;
    script.query_error_while_stopping = ERROR_SERVICE_DOES_NOT_EXIST;
    install(script);
    EXPECT_EQ(state(), SERVICE_RUNNING);
    EXPECT_TRUE(stop());
    EXPECT_EQ(state(), 0U);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_DOES_NOT_EXIST});
    EXPECT_EQ(substitute::service_counts("Agent").queries, 2);
}

TEST_F(ScriptedServices, MayBeRemovedWhileOpen) {
    install({});
    substitute::remove_service("Agent");
    EXPECT_EQ(state(), 0U);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SERVICE_DOES_NOT_EXIST});
    EXPECT_EQ(OpenServiceA(manager_, "Agent", SERVICE_ALL_ACCESS), nullptr);
}

TEST_F(ScriptedServices, FailAtThePlannedCall) {
    install({});
    fail_call("QueryServiceStatus", 2, 31);
    EXPECT_EQ(state(), SERVICE_RUNNING);
    EXPECT_EQ(state(), 0U);
    EXPECT_EQ(GetLastError(), 31U);
    EXPECT_EQ(state(), SERVICE_RUNNING);
    for (const char* const function : {"OpenSCManagerA", "OpenServiceA", "ControlService", "StartServiceA"})
        fail_call(function, 1, 5);
    EXPECT_EQ(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS), nullptr);
    EXPECT_EQ(OpenServiceA(manager_, "Agent", SERVICE_ALL_ACCESS), nullptr);
    EXPECT_FALSE(stop());
    EXPECT_FALSE(start());
    EXPECT_EQ(substitute::failed_calls(), 5);
    EXPECT_EQ(substitute::service_counts("Agent").stops, 0) << "a planned failure does not reach the service";
}

} // namespace
