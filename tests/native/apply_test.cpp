// The apply sequence over scripted services and the virtual clock.
#include "platform/main_window.h"
#include "platform/substitute/control.h"
#include "service/apply.h"
#include "support/fake_entry.h"

#include <gmock/gmock.h>
#include <ostream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Box {
    std::string text;
    std::string caption;
    UINT style;
    bool operator==(const Box&) const = default;
};
void PrintTo(const Box& box, std::ostream* out) {
    *out << box.caption << ": " << box.text << " " << box.style;
}

const Box kRestart{
    "The Tavrin Agent Service is currently started. In order for the changes to be effectuated, the "
    "service will have to be restarted. Do you wish to do this now?",
    "Restart Tavrin Agent Service?", MB_YESNO | MB_ICONQUESTION};
const Box kStopFailed{
    "Failed to stop service. You will have to restart the service manually, in order to effectuate "
    "the changes",
    "Stopping service failed", MB_ICONERROR};
const Box kManual{"You have changed the configuration of the Tavrin Agent. In order for these changes to be "
                  "effectuated, you will have to restart the Tavrin Agent service manually.",
                  "Service must be restarted manually", MB_ICONEXCLAMATION};
const Box kStopped{"The Tavrin Agent service is stopped. Do you want to start it?",
                   "Start Tavrin Agent service?", MB_YESNO | MB_ICONQUESTION};
const Box kStartFailed{"The service could not be started. Please start the Tavrin Agent service manually.",
                       "Error starting service", MB_ICONERROR};
const Box kNotRestarted{
    "The service could not be automatically restarted. Please start the Tavrin Agent service "
    "manually.",
    "Error restarting service", MB_ICONERROR};

class Apply : public testing::Test {
protected:
    void SetUp() override {
        substitute::reset();
        main_window = CreateWindowExA(0, "Static", "main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 436,
                                      229, nullptr, nullptr, nullptr, nullptr);
        configuration.name = "Tavrin Agent";
        configuration.serviceName = "TavrinAgent";
        for (FakeEntry* entry : {&first, &second, &third})
            configuration.entry_items.emplace(reinterpret_cast<HTREEITEM>(++last_item), entry);
        first.is_changed = third.is_changed = true;
        configuration.changed_entries = {&first, &third};
    }

    void TearDown() override {
        EXPECT_EQ(substitute::open_service_handles(), 0) << "every path closes its handles";
        EXPECT_EQ(substitute::answers_left(), 0u);
        main_window = nullptr;
        substitute::reset();
    }

    void no_changes() {
        first.is_changed = third.is_changed = false;
        configuration.changed_entries.clear();
    }

    void agent(const substitute::ServiceScript& script) { substitute::set_service("TavrinAgent", script); }
    substitute::ServiceCounts counts() { return substitute::service_counts("TavrinAgent"); }

    /// Runs the sequence, answering the boxes in turn.
    std::vector<Box> boxes_after_apply(const std::vector<int>& answers = {}) {
        for (const int answer : answers)
            substitute::answer_next_box(answer);
        apply(configuration);
        std::vector<Box> boxes;
        for (const substitute::ShownBox& box : substitute::shown_boxes()) {
            EXPECT_EQ(box.owner, main_window);
            boxes.push_back({box.text, box.caption, box.style});
        }
        return boxes;
    }

    void expect_written() {
        EXPECT_EQ(first.writes, 1);
        EXPECT_EQ(second.writes, 0) << "an entry without a change is never written";
        EXPECT_EQ(third.writes, 1);
        EXPECT_THAT(configuration.changed_entries, IsEmpty());
    }

    Configuration configuration{false};
    FakeEntry first{"first"};
    FakeEntry second{"second"};
    FakeEntry third{"third"};
    std::uintptr_t last_item = 0;
};

TEST_F(Apply, WithoutAServiceNameWritesAndSaysNothing) {
    configuration.serviceName.clear();
    EXPECT_THAT(boxes_after_apply(), IsEmpty());
    expect_written();
    EXPECT_EQ(substitute::call_count("OpenSCManagerA"), 0);
}

TEST_F(Apply, WithoutAServiceNameTheShownControlsAreNotReadAgain) {
    configuration.serviceName.clear();
    second.edited = true;
    configuration.shown_entry = &second;
    boxes_after_apply();
    EXPECT_EQ(second.writes, 0);
}

TEST_F(Apply, WithoutChangesTheServiceIsLeftAlone) {
    no_changes();
    EXPECT_THAT(boxes_after_apply(), IsEmpty());
    EXPECT_EQ(substitute::call_count("OpenSCManagerA"), 0);
    EXPECT_EQ(first.writes + second.writes + third.writes, 0);
}

TEST_F(Apply, TheShownPagesEditCountsAsAChange) {
    no_changes();
    second.edited = true;
    configuration.shown_entry = &second;
    agent({});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart));
    EXPECT_EQ(second.writes, 1);
}

TEST_F(Apply, WritesInAscendingOrderOfTreeItems) {
    std::vector<std::string> order;
    for (FakeEntry* entry : {&first, &second, &third}) {
        entry->is_changed = true;
        entry->on_write = [&order, entry] { order.push_back(entry->title()); };
    }
    configuration.serviceName.clear();
    configuration.entry_items = {{reinterpret_cast<HTREEITEM>(30), &first},
                                 {reinterpret_cast<HTREEITEM>(10), &second},
                                 {reinterpret_cast<HTREEITEM>(20), &third}};
    apply(configuration);
    EXPECT_THAT(order, ElementsAre("second", "third", "first"));
}

TEST_F(Apply, EntriesWithoutTreeItemsAreNeverWritten) {
    configuration.entry_items.clear();
    configuration.serviceName.clear();
    apply(configuration);
    EXPECT_EQ(first.writes, 0);
}

TEST_F(Apply, NoServiceManagerAsksForAManualRestartAndWrites) {
    substitute::fail_call("OpenSCManagerA");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(kManual));
    expect_written();
}

TEST_F(Apply, AnUnknownServiceAsksForAManualRestartAndSaysSoOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_THAT(boxes_after_apply(), ElementsAre(kManual));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find agent service\n");
    expect_written();
}

TEST_F(Apply, AServiceThatMayNotBeOpenedAsksForAManualRestart) {
    agent({.open_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(boxes_after_apply(), ElementsAre(kManual));
    expect_written();
}

TEST_F(Apply, AnUnreadableStateAsksForAManualRestartAndTouchesNothingWhileItRuns) {
    agent({});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(kManual));
    expect_written();
    EXPECT_EQ(counts().stops + counts().starts, 0);
}

TEST_F(Apply, AnUnreadableStateThatTurnsOutStoppedOffersAStart) {
    agent({.state = SERVICE_STOPPED});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply({IDOK, IDYES}), ElementsAre(kManual, kStopped));
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, ARunningServiceIsStoppedAroundTheWriting) {
    agent({.stop_time = 2500});
    DWORD state_at_write = 0;
    first.on_write = [&] { state_at_write = substitute::service_state("TavrinAgent"); };
    testing::internal::CaptureStderr();
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Stopping service\n");
    EXPECT_EQ(state_at_write, SERVICE_STOPPED);
    EXPECT_EQ(substitute::service_state("TavrinAgent"), SERVICE_RUNNING);
    expect_written();
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, ARestartDeclinedWritesAndDeliberatelyReportsThatTheRestartFailed) {
    agent({});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(kRestart, kNotRestarted));
    EXPECT_EQ(counts().stops + counts().starts, 0);
    expect_written();
}

TEST_F(Apply, AServiceThatStoppedByItselfAfterTheRestartWasDeclinedIsOfferedToStart) {
    agent({});
    first.on_write = [&] { agent({.state = SERVICE_STOPPED}); };
    EXPECT_THAT(boxes_after_apply({IDNO, IDNO}), ElementsAre(kRestart, kStopped));
}

TEST_F(Apply, APausedServiceIsAskedAboutLikeARunningOne) {
    agent({.state = SERVICE_PAUSED});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(kRestart, kNotRestarted));
}

TEST_F(Apply, ARefusedStopIsReportedAndTheValuesAreWritten) {
    agent({.stop_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart, kStopFailed, kNotRestarted));
    expect_written();
    EXPECT_EQ(substitute::call_count("Sleep"), 0) << "nothing is waited for";
}

TEST_F(Apply, AServiceThatNeverStopsIsGivenUpAfterSixtySecondsWithOneQueryASecond) {
    agent({.stop_time = substitute::kNever});
    const std::uint64_t start = substitute::clock_now();
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart, kStopFailed, kNotRestarted));
    EXPECT_EQ(substitute::clock_now() - start, 60'000u);
    EXPECT_EQ(substitute::call_count("Sleep"), 6000);
    // One more than the passes: the wait window looks once to have itself shown.
    EXPECT_EQ(substitute::call_count("PeekMessageA"), 6001);
    // One before the question, sixty while waiting, one after the writing.
    EXPECT_EQ(counts().queries, 62);
    expect_written();
}

TEST_F(Apply, AServiceThatStopsInTheLastSecondIsStillStopped) {
    agent({.stop_time = 60'000});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart));
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, AServiceThatVanishesWhileItStopsIsReported) {
    agent({.stop_time = 5000, .query_error_while_stopping = ERROR_SERVICE_DOES_NOT_EXIST});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart, kStopFailed, kNotRestarted));
    EXPECT_EQ(substitute::call_count("Sleep"), 100) << "the first query, after a second, ends the wait";
    expect_written();
}

TEST_F(Apply, AStoppedServiceIsWrittenAroundAndThenOfferedToStart) {
    agent({.state = SERVICE_STOPPED});
    int writes_before_the_question = 0;
    substitute::while_next_box([&] { writes_before_the_question = first.writes; });
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kStopped));
    EXPECT_EQ(writes_before_the_question, 1);
    EXPECT_EQ(counts().starts, 1);
    expect_written();
}

TEST_F(Apply, AStoppedServiceStaysStoppedWhenTheUserSaysNo) {
    agent({.state = SERVICE_STOPPED});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(kStopped));
    EXPECT_EQ(counts().starts, 0);
}

TEST_F(Apply, AFailedStartIsReported) {
    agent({.state = SERVICE_STOPPED, .start_error = ERROR_SERVICE_REQUEST_TIMEOUT});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kStopped, kStartFailed));
}

TEST_F(Apply, AFailedRestartIsReported) {
    agent({.start_error = ERROR_SERVICE_REQUEST_TIMEOUT});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart, kStartFailed));
}

TEST_F(Apply, TheStartIsNotWaitedFor) {
    agent({.state = SERVICE_STOPPED, .start_time = substitute::kNever});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kStopped));
    EXPECT_EQ(substitute::call_count("Sleep"), 0);
}

TEST_F(Apply, AFailedLastQueryReportsThatTheRestartFailed) {
    agent({.state = SERVICE_STOPPED});
    substitute::fail_call("QueryServiceStatus", 2);
    EXPECT_THAT(boxes_after_apply(), ElementsAre(kNotRestarted));
    EXPECT_EQ(counts().starts, 0);
}

TEST_F(Apply, AFailedWriteKeepsWhatWasWrittenBeforeAndStartsNothing) {
    agent({.state = SERVICE_STOPPED});
    third.on_write = [] { throw std::string("Cannot write key third"); };
    try {
        apply(configuration);
        FAIL() << "nothing was thrown";
    } catch (const std::string& text) {
        EXPECT_EQ(text, "Cannot write key third");
    }
    EXPECT_EQ(first.writes, 1);
    EXPECT_EQ(counts().starts, 0);
}

TEST_F(Apply, AQuitMessageThatArrivesWhileStoppingIsKeptForTheProgramsLoop) {
    agent({.stop_time = 1000});
    substitute::when_peeked([] { PostQuitMessage(5); });
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(kRestart));
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 5u);
}

TEST_F(Apply, TheWaitWindowIsThereWhileStoppingAndClosesByItsPostedMessage) {
    agent({.stop_time = 1000});
    HWND wait_window = nullptr;
    substitute::when_peeked(
        [&] { wait_window = FindWindowA("tavrin_service_win", "Tavrin Service Control"); });
    boxes_after_apply({IDYES});
    EXPECT_NE(wait_window, nullptr);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
    EXPECT_EQ(FindWindowA("tavrin_service_win", nullptr), nullptr);
}

TEST_F(Apply, TheSequenceGoesOnWithoutItsWaitWindow) {
    agent({});
    substitute::fail_call("CreateWindowExA", 1);
    const Box no_window{"Error creating service window!", "Error!", MB_ICONEXCLAMATION};
    EXPECT_EQ(boxes_after_apply({IDYES}).at(1), no_window);
    expect_written();
}

TEST_F(Apply, AWaitWindowClassThatCannotBeRegisteredIsSaid) {
    agent({});
    substitute::fail_call("RegisterClassExA", 1);
    const Box no_class{"Window Registration Failed!", "Error!", MB_ICONEXCLAMATION};
    EXPECT_EQ(boxes_after_apply({IDYES}).at(1), no_class);
    expect_written();
}

} // namespace
