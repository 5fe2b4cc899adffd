// The values written, the messages shown and the service started by OK.
#include "support/substitute/apply_run.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(Apply, WritesInAscendingOrderOfTreeItems) {
    std::vector<std::string> order;
    for (FakeEntry* entry : {&first, &second, &third}) {
        entry->is_changed = true;
        entry->on_write = [&order, entry] { order.emplace_back(entry->title()); };
    }
    configuration.serviceName.clear();
    configuration.entry_items = {{reinterpret_cast<HTREEITEM>(30), &first},
                                 {reinterpret_cast<HTREEITEM>(10), &second},
                                 {reinterpret_cast<HTREEITEM>(20), &third}};
    apply_changes(configuration);
    EXPECT_THAT(order, ElementsAre("second", "third", "first"));
}

TEST_F(Apply, EntriesWithoutTreeItemsAreNeverWritten) {
    configuration.entry_items.clear();
    configuration.serviceName.clear();
    apply_changes(configuration);
    EXPECT_EQ(first.writes, 0);
}

TEST_F(Apply, NoServiceManagerAsksForAManualRestartAndWrites) {
    substitute::fail_call("OpenSCManagerA");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    expect_written();
}

TEST_F(Apply, AnUnknownServiceAsksForAManualRestartAndSaysSoOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to find agent service\n");
    expect_written();
}

TEST_F(Apply, AServiceThatMayNotBeOpenedAsksForAManualRestart) {
    agent({.open_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    expect_written();
}

TEST_F(Apply, AnUnreadableStateAsksForAManualRestartAndTouchesNothingWhileItRuns) {
    agent({});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply(), ElementsAre(manual_box));
    expect_written();
    EXPECT_EQ(counts().stops + counts().starts, 0);
}

TEST_F(Apply, AnUnreadableStateThatTurnsOutStoppedOffersAStart) {
    agent({.state = SERVICE_STOPPED});
    substitute::fail_call("QueryServiceStatus");
    EXPECT_THAT(boxes_after_apply({IDOK, IDYES}), ElementsAre(manual_box, stopped_box));
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, ARestartDeclinedWritesAndDeliberatelyReportsThatTheRestartFailed) {
    agent({});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(restart_box, not_restarted_box));
    EXPECT_EQ(counts().stops + counts().starts, 0);
    expect_written();
}

TEST_F(Apply, AServiceThatStoppedByItselfAfterTheRestartWasDeclinedIsOfferedToStart) {
    agent({});
    first.on_write = [&] { agent({.state = SERVICE_STOPPED}); };
    EXPECT_THAT(boxes_after_apply({IDNO, IDNO}), ElementsAre(restart_box, stopped_box));
}

TEST_F(Apply, AStoppedServiceIsWrittenAroundAndThenOfferedToStart) {
    agent({.state = SERVICE_STOPPED});
    int writes_before_the_question = 0;
    substitute::while_next_box([&] { writes_before_the_question = first.writes; });
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(stopped_box));
    EXPECT_EQ(writes_before_the_question, 1);
    EXPECT_EQ(counts().starts, 1);
    expect_written();
}

TEST_F(Apply, AStoppedServiceStaysStoppedWhenTheUserSaysNo) {
    agent({.state = SERVICE_STOPPED});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(stopped_box));
    EXPECT_EQ(counts().starts, 0);
}

TEST_F(Apply, AFailedStartIsReported) {
    agent({.state = SERVICE_STOPPED, .start_error = ERROR_SERVICE_REQUEST_TIMEOUT});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(stopped_box, start_failed_box));
}

TEST_F(Apply, AFailedRestartIsReported) {
    agent({.start_error = ERROR_SERVICE_REQUEST_TIMEOUT});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box, start_failed_box));
}

TEST_F(Apply, TheStartIsNotWaitedFor) {
    agent({.state = SERVICE_STOPPED, .start_time = substitute::never});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(stopped_box));
    EXPECT_EQ(substitute::call_count("Sleep"), 0);
}

TEST_F(Apply, AFailedLastQueryReportsThatTheRestartFailed) {
    agent({.state = SERVICE_STOPPED});
    substitute::fail_call("QueryServiceStatus", 2);
    EXPECT_THAT(boxes_after_apply(), ElementsAre(not_restarted_box));
    EXPECT_EQ(counts().starts, 0);
}

TEST_F(Apply, AFailedWriteKeepsWhatWasWrittenBeforeAndStartsNothing) {
    agent({.state = SERVICE_STOPPED});
    third.on_write = [] { throw std::string("Cannot write key third"); };
    try {
        apply_changes(configuration);
        FAIL() << "nothing was thrown";
    } catch (const std::string& text) {
        EXPECT_EQ(text, "Cannot write key third");
    }
    EXPECT_EQ(first.writes, 1);
    EXPECT_EQ(counts().starts, 0);
}

} // namespace
