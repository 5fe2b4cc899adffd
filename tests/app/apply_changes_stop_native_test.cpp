// Stopping the service around the writing.
#include "support/substitute/apply_run.h"
#include "support/test_window.h"

namespace {

using testing::ElementsAre;

TEST_F(Apply, ARunningServiceIsStoppedAroundTheWriting) {
    agent({.stop_time = 2500});
    DWORD state_at_write = 0;
    first.on_write = [&] { state_at_write = substitute::service_state("TavrinAgent"); };
    testing::internal::CaptureStderr();
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Stopping service\n");
    EXPECT_EQ(state_at_write, SERVICE_STOPPED);
    EXPECT_EQ(substitute::service_state("TavrinAgent"), SERVICE_RUNNING);
    expect_written();
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, APausedServiceIsAskedAboutLikeARunningOne) {
    agent({.state = SERVICE_PAUSED});
    EXPECT_THAT(boxes_after_apply({IDNO}), ElementsAre(restart_box, not_restarted_box));
}

TEST_F(Apply, ARefusedStopIsReportedAndTheValuesAreWritten) {
    agent({.stop_error = ERROR_ACCESS_DENIED});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box, stop_failed_box, not_restarted_box));
    expect_written();
    EXPECT_EQ(substitute::call_count("Sleep"), 0) << "nothing is waited for";
}

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

TEST_F(Apply, AServiceThatStopsInTheLastSecondIsStillStopped) {
    agent({.stop_time = 60'000});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box));
    EXPECT_EQ(counts().starts, 1);
}

TEST_F(Apply, AServiceThatVanishesWhileItStopsIsReported) {
    agent({.stop_time = 5000, .query_error_while_stopping = ERROR_SERVICE_DOES_NOT_EXIST});
    EXPECT_THAT(boxes_after_apply({IDYES}), ElementsAre(restart_box, stop_failed_box, not_restarted_box));
    EXPECT_EQ(substitute::call_count("Sleep"), 100) << "the first query, after a second, ends the wait";
    expect_written();
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
