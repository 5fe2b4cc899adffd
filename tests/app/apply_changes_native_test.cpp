// The window's side of the apply sequence over scripted services and the virtual clock: what it writes, shows
// and waits for. tests/service/restart_native_test.cpp has the sequence itself.
#include "app/apply_changes.h"
#include "substitute/control.h"
#include "support/fake_entry.h"
#include "support/test_window.h"
#include "support/thrown.h"
#include "window/top_level.h"

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

const Box restart_box{
    "The Tavrin Agent Service is currently started. In order for the changes to be effectuated, the "
    "service will have to be restarted. Do you wish to do this now?",
    "Restart Tavrin Agent Service?", MB_YESNO | MB_ICONQUESTION};
const Box stop_failed_box{
    "Failed to stop service. You will have to restart the service manually, in order to effectuate "
    "the changes",
    "Stopping service failed", MB_ICONERROR};
const Box manual_box{
    "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
    "effectuated, you will have to restart the Tavrin Agent service manually.",
    "Service must be restarted manually", MB_ICONEXCLAMATION};
const Box stopped_box{"The Tavrin Agent service is stopped. Do you want to start it?",
                      "Start Tavrin Agent service?", MB_YESNO | MB_ICONQUESTION};
const Box start_failed_box{
    "The service could not be started. Please start the Tavrin Agent service manually.",
    "Error starting service", MB_ICONERROR};
const Box not_restarted_box{
    "The service could not be automatically restarted. Please start the Tavrin Agent service "
    "manually.",
    "Error restarting service", MB_ICONERROR};

class Apply : public testing::Test {
protected:
    void SetUp() override {
        substitute::reset();
        main_window = CreateWindowExA(0, "Static", "main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 436,
                                      229, nullptr, nullptr, nullptr, nullptr);
        EnableWindow(main_window, FALSE); // as OK does
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
        apply_changes(configuration);
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
        EXPECT_THAT(configuration.changed_entries, testing::IsEmpty());
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
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box));
    EXPECT_EQ(second.writes, 1);
}

TEST_F(Apply, WritesInAscendingOrderOfTreeItemsAndNoEntryWithoutOne) {
    std::vector<std::string> order;
    for (FakeEntry* entry : {&first, &second, &third}) {
        entry->is_changed = true;
        entry->on_write = [&order, entry] { order.emplace_back(entry->title()); };
    }
    configuration.serviceName.clear();
    configuration.entry_items = {{reinterpret_cast<HTREEITEM>(30), &first},
                                 {reinterpret_cast<HTREEITEM>(20), &third}};
    apply_changes(configuration);
    EXPECT_THAT(order, ElementsAre("third", "first"));
}

TEST_F(Apply, AFailedWriteKeepsWhatWasWrittenBeforeAndStartsNothing) {
    agent({.state = SERVICE_STOPPED});
    third.on_write = [] { throw std::string("Cannot write key third"); };
    EXPECT_EQ(thrown_text([&] { apply_changes(configuration); }), "Cannot write key third");
    EXPECT_EQ(first.writes, 1);
    EXPECT_EQ(counts().starts, 0);
}

/// A service, how the user answers, and what is shown. The values are written in any case.
struct Restarted {
    substitute::ServiceScript service;
    std::vector<int> answers;
    std::vector<Box> boxes;
    int starts = 0;
    /// How often the program sleeps for ten milliseconds.
    int sleeps = 0;
};
void PrintTo(const Restarted& restarted, std::ostream* out) {
    *out << testing::PrintToString(restarted.boxes) << " after " << restarted.sleeps << " sleeps";
}

class ApplyToService : public Apply, public testing::WithParamInterface<Restarted> {};

TEST_P(ApplyToService, WritesAndSaysWhatBecameOfTheService) {
    agent(GetParam().service);
    DWORD state_at_write = 0;
    first.on_write = [&] { state_at_write = substitute::service_state("TavrinAgent"); };
    EXPECT_EQ(boxes_after_apply(GetParam().answers), GetParam().boxes);
    EXPECT_EQ(counts().starts, GetParam().starts);
    EXPECT_EQ(substitute::call_count("Sleep"), GetParam().sleeps);
    EXPECT_TRUE(GetParam().starts == 0 || state_at_write == SERVICE_STOPPED);
    expect_written();
}

INSTANTIATE_TEST_SUITE_P(
    Running, ApplyToService,
    testing::Values(
        Restarted{{.stop_time = 2500}, {IDYES}, {restart_box}, 1, 300},
        Restarted{{.stop_time = 60'000}, {IDYES}, {restart_box}, 1, 6000}, // in the last second
        // Deliberately reported as a restart that failed.
        Restarted{{}, {IDNO}, {restart_box, not_restarted_box}},
        Restarted{{.state = SERVICE_PAUSED}, {IDNO}, {restart_box, not_restarted_box}},
        Restarted{
            {.stop_error = ERROR_ACCESS_DENIED}, {IDYES}, {restart_box, stop_failed_box, not_restarted_box}},
        Restarted{{.stop_time = 5000, .query_error_while_stopping = ERROR_SERVICE_DOES_NOT_EXIST},
                  {IDYES},
                  {restart_box, stop_failed_box, not_restarted_box},
                  0,
                  100}, // the first query, after a second, ends the wait
        Restarted{
            {.start_error = ERROR_SERVICE_REQUEST_TIMEOUT}, {IDYES}, {restart_box, start_failed_box}, 1}));

INSTANTIATE_TEST_SUITE_P(
    Stopped, ApplyToService,
    testing::Values(
        Restarted{{.state = SERVICE_STOPPED}, {IDNO}, {stopped_box}},
        // The start is not waited for.
        Restarted{{.state = SERVICE_STOPPED, .start_time = substitute::never}, {IDYES}, {stopped_box}, 1},
        Restarted{{.state = SERVICE_STOPPED, .start_error = ERROR_SERVICE_REQUEST_TIMEOUT},
                  {IDYES},
                  {stopped_box, start_failed_box},
                  1},
        Restarted{{.open_error = ERROR_ACCESS_DENIED}, {}, {manual_box}}));

TEST_F(Apply, AServiceThatNeverStopsIsGivenUpAfterSixtySecondsWithOneQueryASecond) {
    agent({.stop_time = substitute::never});
    const std::uint64_t start = substitute::clock_now();
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box, stop_failed_box, not_restarted_box));
    EXPECT_EQ(substitute::clock_now() - start, 60'000u);
    EXPECT_EQ(substitute::call_count("Sleep"), 6000);
    // One more than the passes: the wait window looks once to have itself shown.
    EXPECT_EQ(substitute::call_count("PeekMessageA"), 6001);
    // One before the question, sixty while waiting, one after the writing.
    EXPECT_EQ(counts().queries, 62);
    expect_written();
}

TEST_F(Apply, SaysOnStandardErrorWhatItDoesAndWhatItDoesNotFind) {
    testing::internal::CaptureStderr();
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find agent service\n");
    expect_written();
    agent({});
    second.edited = true;
    configuration.shown_entry = &second;
    substitute::answer_next_box(IDYES);
    testing::internal::CaptureStderr();
    apply_changes(configuration);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Stopping service\n");
}

TEST_F(Apply, NoServiceManagerAsksForAManualRestartAndWrites) {
    substitute::fail_call("OpenSCManagerA");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    expect_written();
}

TEST_F(Apply, AnUnreadableStateAsksForAManualRestartAndTouchesNothingWhileItRuns) {
    agent({});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    EXPECT_EQ(counts().stops + counts().starts, 0);
    expect_written();
}

TEST_F(Apply, AnUnreadableStateThatTurnsOutStoppedOffersAStart) {
    agent({.state = SERVICE_STOPPED});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply({IDOK, IDYES}), ElementsAre(manual_box, stopped_box));
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, AServiceThatStoppedByItselfAfterTheRestartWasDeclinedIsOfferedToStart) {
    agent({});
    first.on_write = [&] { agent({.state = SERVICE_STOPPED}); };
    EXPECT_THAT(boxes_after_apply({IDNO, IDNO}), ElementsAre(restart_box, stopped_box));
}

TEST_F(Apply, AStoppedServiceIsWrittenBeforeTheQuestion) {
    agent({.state = SERVICE_STOPPED});
    int writes_before_the_question = 0;
    substitute::while_next_box([&] { writes_before_the_question = first.writes; });
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(stopped_box));
    EXPECT_EQ(writes_before_the_question, 1);
}

TEST_F(Apply, AQuitMessageThatArrivesWhileStoppingIsKeptForTheProgramsLoop) {
    agent({.stop_time = 1000});
    substitute::when_peeked([] { PostQuitMessage(5); });
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box));
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 5u);
}

TEST_F(Apply, WindowsGetTheirMessagesWhileTheServiceStops) {
    agent({.stop_time = 1000});
    const HWND other = CreateWindowExA(0, "Static", "other", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                       nullptr, nullptr, nullptr);
    substitute::when_peeked([other] { PostMessageA(other, WM_CLOSE, 0, 0); });
    boxes_after_apply({IDYES});
    EXPECT_FALSE(IsWindow(other));
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

/// Both are still there after the sequence, which handles no messages once the service has stopped.
TEST_F(Apply, EachWaitWindowSaysWhatIsWaitedFor) {
    agent({});
    boxes_after_apply({IDYES});
    std::vector<std::string> texts;
    while (const HWND shown = FindWindowA("tavrin_service_win", nullptr)) {
        texts.push_back(text_of(GetDlgItem(shown, 106)));
        DestroyWindow(shown);
    }
    EXPECT_THAT(texts, ElementsAre("Please wait while stopping service....",
                                   "Please wait while starting service...."));
}

TEST_F(Apply, TheSequenceGoesOnWithoutItsWaitWindow) {
    agent({});
    for (const auto& [function, text] : {std::pair{"CreateWindowExA", "Error creating service window!"},
                                         std::pair{"RegisterClassExA", "Window Registration Failed!"}}) {
        substitute::fail_call(function, 1);
        EXPECT_EQ(boxes_after_apply({IDYES}).at(1), (Box{text, "Error!", MB_ICONEXCLAMATION}));
        expect_written();
        TearDown();
        SetUp();
        agent({});
        first.writes = third.writes = 0;
    }
}

} // namespace
