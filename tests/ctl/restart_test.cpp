// Restarts around a change, over the substitute's scripted services: what is checked before, and what a later
// run finishes.
#include "ctl/failure.h"
#include "ctl/machine/service.h"
#include "ctl/program_run.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace {

using testing::HasSubstr;
using testing::Not;

class Restarts : public Program {
protected:
    /// As a run that ended before the service ran again leaves it.
    void leave_pending(const std::string& file) {
        std::filesystem::create_directories(scratch.path_of("data"));
        std::ofstream(scratch.path_of("data/" + file)) << "1";
    }
    void agent(const substitute::ServiceScript& script) { substitute::set_service("AgentService", script); }
    Ended set_port(std::vector<std::string> words = {}) {
        words.insert(words.begin(), {"set", "Agent", "Port=5001", "--timeout", "3"});
        return change(std::move(words));
    }
    void expect_refused(ctl::ExitCode code, const std::string& words) {
        const Ended done = set_port();
        EXPECT_EQ(done.code, code);
        EXPECT_THAT(
            done.err,
            testing::StrEq("tavrinctl: " + words +
                           "; nothing was written; use \"--restart never\" to write the values without "
                           "a restart\n"));
        EXPECT_EQ(text("Port"), "5000");
        EXPECT_EQ(backup(), "");
        EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
        EXPECT_FALSE(pending());
        EXPECT_EQ(set_port({"--restart", "never"}).code, ctl::ExitCode::success);
        EXPECT_EQ(text("Port"), "5001");
        set_text(key, "Port", "5000");
        std::filesystem::remove_all(scratch.path_of("backup"));
    }
    bool pending() { return ctl::restart_is_pending("AgentService"); }
    int stops() { return substitute::service_counts("AgentService").stops; }
    int starts() { return substitute::service_counts("AgentService").starts; }
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

TEST_F(Restarts, ThatCannotSucceedAreKnownBeforeAnythingIsWritten) {
    agent({.start_type = SERVICE_DISABLED});
    expect_refused(ctl::ExitCode::failed,
                   "the service AgentService is disabled and could not be started again");
    agent({.accepts_stop = false});
    expect_refused(ctl::ExitCode::failed, "the service AgentService does not accept a stop");
    agent({.dependents = {"Spooler", "Backup", "Fax", "Web", "Mail", "Time"}});
    expect_refused(ctl::ExitCode::failed,
                   "the service AgentService cannot be stopped while services that depend on it "
                   "run: Spooler, Backup, Fax, Web, Mail, Time");
    agent({.open_error = ERROR_ACCESS_DENIED});
    expect_refused(ctl::ExitCode::access_denied, "access to the service AgentService is denied");
    agent({.open_error = ERROR_SERVICE_MARKED_FOR_DELETE});
    expect_refused(ctl::ExitCode::failed, "cannot open the service AgentService: Service marked for delete.");
}

TEST_F(Restarts, OfAServiceThatIsOnItsWayWaitForIt) {
    for (const DWORD state : {SERVICE_START_PENDING, SERVICE_STOP_PENDING}) {
        agent({.state = state});
        const std::uint64_t start = substitute::clock_now();
        expect_refused(ctl::ExitCode::failed,
                       "the service AgentService did not finish starting or stopping within --timeout");
        EXPECT_EQ(substitute::clock_now() - start, 3'000u);
        agent({.state = state});
        int looks = 0;
        substitute::on_clock([&](std::uint64_t) {
            if (++looks == 10)
                agent({});
        });
        EXPECT_EQ(set_port().code, ctl::ExitCode::success);
        substitute::on_clock([](std::uint64_t) {});
        EXPECT_EQ(stops(), 1);
        EXPECT_EQ(starts(), 1);
        set_text(key, "Port", "5000");
        std::filesystem::remove_all(scratch.path_of("backup"));
    }
}

TEST_F(Restarts, AskForNoMoreThanTheyNeed) {
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
    EXPECT_EQ(substitute::asked_access("AgentService"),
              DWORD{SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG | SERVICE_START | SERVICE_STOP});
}

TEST_F(Restarts, ThatAreRefusedWriteNothing) {
    agent({.stop_error = ERROR_ACCESS_DENIED});
    const Ended done = set_port();
    EXPECT_EQ(done.code, ctl::ExitCode::failed);
    EXPECT_THAT(done.err,
                HasSubstr("service AgentService refused to stop: Access denied. (5); use \"--restart never\" "
                          "to write the values without a restart; nothing was written\n"));
    EXPECT_EQ(text("Port"), "5000");
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, AreNotedBeforeTheServiceStops) {
    agent({.stop_time = 2000});
    std::vector<bool> noted;
    substitute::on_clock([&](std::uint64_t) { noted.push_back(pending()); });
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
    EXPECT_THAT(noted, testing::AllOf(testing::SizeIs(200), testing::Each(true)));
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, ThatCannotBeNotedStopNothing) {
    std::filesystem::create_directories(scratch.path_of("data/restart-agentservice"));
    std::ofstream(scratch.path_of("data/restart-agentservice/full")) << "1";
    const Ended done = set_port();
    EXPECT_EQ(done.code, ctl::ExitCode::failed);
    EXPECT_THAT(done.err, HasSubstr("cannot write " + scratch.path_of("data/restart-agentservice") +
                                    "; nothing was written\n"));
    EXPECT_EQ(stops(), 0);
}

/// Disabled between the first look and the start, a stop that never ends, and a start that never ends.
TEST_F(Restarts, ThatFailAreReportedByEveryRunUntilOneFinishesThem) {
    for (const substitute::ServiceScript& script :
         {substitute::ServiceScript{.start_error = ERROR_SERVICE_DISABLED},
          substitute::ServiceScript{.stop_time = substitute::never},
          substitute::ServiceScript{.start_time = substitute::never}}) {
        agent(script);
        EXPECT_EQ(set_port().code, ctl::ExitCode::not_restarted);
        EXPECT_EQ(text("Port"), "5001");
        EXPECT_TRUE(pending());
        EXPECT_EQ(set_port({"--what-if", "--exit-code"}).code, ctl::ExitCode::drift);
        EXPECT_EQ(set_port().code, ctl::ExitCode::not_restarted) << "the second run tells it as well";
        const Ended never = set_port({"--restart", "never"});
        EXPECT_EQ(never.code, ctl::ExitCode::success);
        EXPECT_EQ(never.err, "tavrinctl: warning: an earlier run left the restart of service AgentService "
                             "unfinished; to finish it, run set or apply without \"--restart never\"\n");
        EXPECT_EQ(never.out,
                  "Agent\n  service AgentService must be restarted (left unfinished by an earlier run)\n");
        agent({.state = SERVICE_STOPPED});
        const Ended third = set_port({"--exit-code"});
        EXPECT_EQ(third.code, ctl::ExitCode::drift);
        EXPECT_EQ(third.out, "Agent\n  service AgentService restarted (left unfinished by an earlier run)\n");
        EXPECT_EQ(starts(), 1);
        EXPECT_FALSE(pending());
        EXPECT_EQ(set_port({"--exit-code"}).code, ctl::ExitCode::success);
        EXPECT_EQ(starts(), 1);
        set_text(key, "Port", "5000");
    }
}

TEST_F(Restarts, AreFinishedByAChangeOfAnotherConfigurationToo) {
    add_configuration("Tray", "SOFTWARE\\Tavrin\\Agent\nTray\n!G\n$W\nW\nH\nString\n");
    leave_pending("restart-agentservice");
    agent({.state = SERVICE_STOPPED});
    EXPECT_EQ(change({"set", "Tray", "W=1"}).code, ctl::ExitCode::success);
    EXPECT_EQ(starts(), 1);
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, OfARunningServiceAreFinishedToo) {
    leave_pending("restart-agentservice");
    const Ended done = change({"set", "Agent", "Port=5000", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.out, HasSubstr("\"restarted\": true,\n      \"changed\": true"));
    EXPECT_EQ(stops(), 1);
    EXPECT_EQ(starts(), 1);
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, OfAServiceThatWasRemovedAreForgotten) {
    leave_pending("restart-agentservice");
    substitute::remove_service("AgentService");
    const Ended done = change({"set", "Agent", "Port=5000"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.err, HasSubstr("warning: there is no service AgentService to restart"));
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, OfAServiceThatAnAdministratorStoppedAreNotMade) {
    agent({.state = SERVICE_STOPPED, .start_type = SERVICE_DISABLED});
    EXPECT_EQ(set_port().code, ctl::ExitCode::success);
    EXPECT_EQ(starts(), 0);
    EXPECT_FALSE(pending());
}

TEST_F(Restarts, AreOneForTwoConfigurationsWithOneService) {
    add_configuration("Tray", "SOFTWARE\\Tavrin\\Agent\nTray\nAGENTSERVICE\n!G\n$W\nW\nH\nString\n");
    const Ended done = apply(R"({"schema":1,"configurations":{"Agent":{"values":{"Port":"1"}},)"
                             R"("Tray":{"values":{"W":"2"}}}})",
                             {"--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_EQ(text("Port") + text("W"), "12");
    EXPECT_EQ(stops(), 1);
    EXPECT_EQ(starts(), 1);
    EXPECT_THAT(done.out, Not(HasSubstr("\"restarted\": false")));
}

TEST_F(Restarts, ThatFailAreToldEach) {
    add_configuration("Tray", "SOFTWARE\\Tavrin\\Agent\nTray\nTray\n!G\n$W\nW\nH\nString\n");
    substitute::set_service("Tray", {.start_error = ERROR_SERVICE_DISABLED});
    agent({.stop_time = substitute::never});
    const Ended done = apply(R"({"schema":1,"configurations":{"Agent":{"values":{"Port":"1"}},)"
                             R"("Tray":{"values":{"W":"2"}}}})");
    EXPECT_EQ(done.code, ctl::ExitCode::not_restarted);
    EXPECT_THAT(done.err, HasSubstr("values written, but service AgentService did not stop; the next set or "
                                    "apply tries again\n"));
    EXPECT_THAT(done.err, HasSubstr("values written, but service Tray did not start; the next set or apply "
                                    "tries again: Service is disabled. (1058)\n"));
}

} // namespace
