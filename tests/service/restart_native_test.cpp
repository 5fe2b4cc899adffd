// The restart sequence as its caller sees it, with any implementation of the dialogue, over scripted services
// and the virtual clock.
#include "service/restart.h"
#include "substitute/control.h"
#include "support/thrown.h"

#include <functional>
#include <gmock/gmock.h>
#include <string>
#include <utility>
#include <vector>

namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// Gives prepared answers and records the questions.
class Notes final : public RestartDialogue {
public:
    bool agrees_to_restart() override { return note("restart?", restarts); }
    bool agrees_to_start() override { return note("start?", starts); }
    void while_stopping(const std::function<void()>& step) override { around("stopping", step); }
    void while_starting(const std::function<void()>& step) override { around("starting", step); }
    void pass() override {
        if (++passes == given_up_at)
            throw std::string("given up");
        if (on_pass)
            on_pass();
    }
    void tell(ServiceTrouble trouble, DWORD code) override {
        static const char* const names[] = {"unreachable", "unknown",     "refused",
                                            "not stopped", "not started", "not restarted"};
        events.push_back(names[static_cast<int>(trouble)] + std::string(" ") + std::to_string(code));
    }

    std::vector<std::string> events;
    bool restarts = true;
    bool starts = true;
    int passes = 0;
    int given_up_at = 0;
    std::function<void()> on_pass;

private:
    bool note(const char* event, bool answer) {
        events.emplace_back(event);
        return answer;
    }
    void around(const char* event, const std::function<void()>& step) {
        events.emplace_back(event);
        step();
        events.emplace_back("done");
    }
};

class Restart : public testing::Test {
protected:
    void SetUp() override { substitute::reset(); }
    void TearDown() override {
        EXPECT_EQ(substitute::open_service_handles(), 0) << "every path closes its handles";
        EXPECT_THAT(substitute::shown_boxes(), IsEmpty());
        EXPECT_EQ(substitute::call_count("CreateWindowExA"), 0);
        substitute::reset();
    }

    void agent(const substitute::ServiceScript& script) { substitute::set_service("Agent", script); }

    std::vector<std::string> events(bool any = true) {
        writing.any = [=] { return any; };
        writing.write = [this] { notes.events.emplace_back("write"); };
        restart_around(writing, notes);
        return std::exchange(notes.events, {});
    }

    Writing writing{.service_name = "Agent"};
    Notes notes;
};

TEST_F(Restart, IsAroundTheWriting) {
    agent({.stop_time = 1500});
    EXPECT_THAT(events(), ElementsAre("restart?", "stopping", "done", "write", "starting", "done"));
    EXPECT_EQ(substitute::service_state("Agent"), SERVICE_RUNNING);
    EXPECT_EQ(notes.passes, 200) << "every ten milliseconds until the query after two seconds";
}

TEST_F(Restart, AsksNothingOfWhoNamesNoServiceOrHasNoChanges) {
    agent({});
    EXPECT_THAT(events(false), ElementsAre("write"));
    writing.service_name.clear();
    EXPECT_THAT(events(), ElementsAre("write"));
    EXPECT_EQ(substitute::call_count("OpenSCManagerA"), 0);
}

TEST_F(Restart, ThatIsDeclinedLeavesTheServiceRunningAndSaysSo) {
    agent({});
    notes.restarts = false;
    EXPECT_THAT(events(), ElementsAre("restart?", "write", "not restarted 0"));
    EXPECT_EQ(substitute::service_counts("Agent").stops, 0);
}

TEST_F(Restart, StartsAStoppedServiceOnlyWhereThatIsWanted) {
    agent({.state = SERVICE_STOPPED});
    EXPECT_THAT(events(), ElementsAre("write", "start?", "starting", "done"));
    agent({.state = SERVICE_STOPPED});
    notes.starts = false;
    EXPECT_THAT(events(), ElementsAre("write", "start?"));
    EXPECT_EQ(substitute::service_counts("Agent").starts, 0);
}

TEST_F(Restart, TellsWhyTheServiceCannotBeControlled) {
    EXPECT_THAT(events(), ElementsAre("unknown 1060", "write"));
    EXPECT_EQ(substitute::call_count("QueryServiceStatus"), 0) << "there is nothing to ask";
    agent({.open_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(events(), ElementsAre("unknown 5", "write"));
    substitute::fail_call("OpenSCManagerA");
    EXPECT_THAT(events(), ElementsAre("unreachable 5", "write"));
}

TEST_F(Restart, TellsWhatWasRefused) {
    agent({.stop_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "refused 5", "write", "not restarted 0"));
    agent({.start_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "write", "starting", "done", "not started 5"));
}

TEST_F(Restart, WaitsAsLongAsItsCallerWants) {
    agent({.stop_time = substitute::never});
    writing.stop_limit = milliseconds(1500);
    const std::uint64_t start = substitute::clock_now();
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "not stopped 0", "write", "not restarted 0"));
    EXPECT_EQ(substitute::clock_now() - start, 1500U);
}

TEST_F(Restart, WaitsUntilTheServiceRunsIfItsCallerWants) {
    agent({.start_time = 2500});
    writing.start_limit = milliseconds(10'000);
    EXPECT_THAT(events(), ElementsAre("restart?", "stopping", "done", "write", "starting", "done"));
    EXPECT_EQ(substitute::service_state("Agent"), SERVICE_RUNNING);
    EXPECT_EQ(notes.passes, 300);
}

TEST_F(Restart, TellsOfAServiceThatDoesNotComeToRun) {
    agent({.start_time = substitute::never});
    writing.start_limit = milliseconds(3000);
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "write", "starting", "done", "not started 0"));
}

TEST_F(Restart, TellsOfAServiceThatStopsAgainWhileItStarts) {
    agent({.start_time = substitute::never});
    writing.start_limit = milliseconds(60'000);
    notes.on_pass = [this] { agent({.state = SERVICE_STOPPED}); };
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "write", "starting", "done", "not started 0"));
    EXPECT_EQ(notes.passes, 100) << "the first look, after a second, ends the wait";
}

/// Its state is read before the question, after the writing and, where that is waited for, after the start.
TEST_F(Restart, TellsOfAServiceWhoseStateCannotBeRead) {
    writing.start_limit = milliseconds(3000);
    agent({});
    substitute::fail_call("QueryServiceStatus", 1, ERROR_ACCESS_DENIED);
    EXPECT_THAT(events(), ElementsAre("unreachable 5", "write"));
    agent({});
    substitute::fail_call("QueryServiceStatus", 2, ERROR_INVALID_HANDLE);
    EXPECT_THAT(events(), ElementsAre("restart?", "stopping", "done", "write", "not restarted 6"));
    agent({});
    substitute::fail_call("QueryServiceStatus", 3, ERROR_INVALID_HANDLE);
    EXPECT_THAT(events(),
                ElementsAre("restart?", "stopping", "done", "write", "starting", "done", "not started 6"));
}

TEST_F(Restart, CanBeGivenUp) {
    agent({.stop_time = substitute::never});
    notes.given_up_at = 7;
    EXPECT_EQ(thrown_text([&] { events(); }), "given up");
    EXPECT_THAT(notes.events, ElementsAre("restart?", "stopping"));
    EXPECT_EQ(substitute::call_count("Sleep"), 7);
}

TEST_F(Restart, HandsOnWhatTheWritingThrows) {
    agent({});
    writing.any = [] { return true; };
    writing.write = [] { throw std::string("read only"); };
    EXPECT_EQ(thrown_text([&] { restart_around(writing, notes); }), "read only");
    EXPECT_EQ(substitute::service_counts("Agent").starts, 0);
}

} // namespace
