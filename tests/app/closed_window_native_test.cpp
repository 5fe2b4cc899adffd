// Requests to end the program that arrive while OK's sequence runs wait until the sequence has finished.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

constexpr char first_spec[] =
    "SOFTWARE\\TavrinTests\\Agent\nFirst\nTavrinAgent\n!All\n$Name\nName\nh\nString\n";
constexpr char second_spec[] =
    "SOFTWARE\\TavrinTests\\Agent\nSecond\nNoSuchService\n!All\n$Flag\nFlag\nh\nBoolean\n"
    "$Colour\nColour\nh\nOptions\nred\ngreen\nblue\n$Text\nText\nh\nString\n";

void close_window() { PostMessageA(main_window, WM_CLOSE, 0, 0); }
void quit_thread() { PostThreadMessageA(GetCurrentThreadId(), WM_QUIT, 0, 0); }
LRESULT ask_to_end_session() { return SendMessageA(main_window, WM_QUERYENDSESSION, 0, 0); }

class WhileOkRuns : public ProgramTest {
protected:
    void SetUp() override {
        substitute::set_service("TavrinAgent", {.stop_time = 2000});
        spec_file("A", first_spec);
        spec_file("B", second_spec);
        set_text(agent_key, "Name", "web1");
        set_text(agent_key, "Flag", "true");
        set_text(agent_key, "Colour", "green");
        then_edit("Name", "web2");
    }
    /// Presses OK and agrees to the restart. `event` happens while the service stops.
    int press_ok(std::function<void()> event) {
        then([this, event = std::move(event)] {
            boxes.answer(IDYES);
            substitute::on_clock([event](std::uint64_t) {
                substitute::on_clock([](std::uint64_t) {});
                event();
            });
            SendMessageA(control(ok_id), BM_CLICK, 0, 0);
        });
        return run();
    }
    /// Changes something in the second configuration, whose service nobody knows.
    void change_text_too() { then_edit("Text", "some text"); }
    static void expect_name_written() {
        EXPECT_EQ(text_value(agent_key, "Name"), "web2");
        EXPECT_EQ(substitute::service_state("TavrinAgent"), static_cast<DWORD>(SERVICE_RUNNING));
        EXPECT_EQ(main_window, nullptr);
    }
};

using testing::ElementsAre;

TEST_F(WhileOkRuns, OkIsNotObeyedOnceMore) {
    EXPECT_EQ(press_ok([] { SendMessageA(control(ok_id), BM_CLICK, 0, 0); }), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Restart First Service?"));
    EXPECT_EQ(substitute::service_counts("TavrinAgent").starts, 1);
}

TEST_F(WhileOkRuns, WhatTheNextConfigurationHasToSayIsSeenAfterAnOrderToClose) {
    change_text_too();
    EXPECT_EQ(press_ok(close_window), 0);
    expect_name_written();
    EXPECT_EQ(text_value(agent_key, "Text"), "some text");
    ASSERT_THAT(boxes.captions(),
                ElementsAre("Restart First Service?", "Service must be restarted manually"));
    EXPECT_NE(boxes.seen()[1].owner, nullptr);
}

TEST_F(WhileOkRuns, TheRefusedStartIsSeenAfterAnOrderToClose) {
    substitute::set_service("TavrinAgent", {.start_error = ERROR_SERVICE_DISABLED, .stop_time = 2000});
    EXPECT_EQ(press_ok(close_window), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Restart First Service?", "Error starting service"));
}

TEST_F(WhileOkRuns, TheRefusedWritingIsSeenAfterAnOrderToClose) {
    EXPECT_EQ(press_ok([] {
                  close_window();
                  substitute::fail_call("RegOpenKeyExA");
              }),
              1);
    ASSERT_THAT(boxes.captions(), ElementsAre("Restart First Service?", "Error!"));
    EXPECT_EQ(boxes.seen()[1].text, "Cannot open path \"SOFTWARE\\TavrinTests\\Agent\" for writing");
}

TEST_F(WhileOkRuns, TheQuestionIsAskedAgainWhenAQuitMessageEndedIt) {
    boxes.while_shown(quit_thread);
    EXPECT_EQ(press_ok([] {}), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Restart First Service?", "Restart First Service?"));
    expect_name_written();
}

TEST_F(WhileOkRuns, TheQuestionIsAskedAgainWhenTheBoxItselfWasTakenAway) {
    then([this] { boxes.answer(IDCANCEL); });
    EXPECT_EQ(press_ok([] {}), 0);
    EXPECT_THAT(boxes.captions(), ElementsAre("Restart First Service?", "Restart First Service?"));
    expect_name_written();
}

TEST_F(WhileOkRuns, AQuitMessageSilencesNothing) {
    change_text_too();
    EXPECT_EQ(press_ok(quit_thread), 0);
    EXPECT_THAT(boxes.captions(),
                ElementsAre("Restart First Service?", "Service must be restarted manually"));
    expect_name_written();
}

TEST_F(WhileOkRuns, AQuitMessageLeavesTheWindowsTheirMessages) {
    int painted = 0;
    substitute::on_clock([&](std::uint64_t) {
        if (const HWND wait = FindWindowA("tavrin_service_win", nullptr); wait != nullptr && painted++ == 0) {
            quit_thread();
            PostMessageA(wait, WM_CLOSE, 0, 0);
        }
    });
    then([this] {
        boxes.answer(IDYES);
        SendMessageA(control(ok_id), BM_CLICK, 0, 0);
    });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(painted, 1) << "the wait window took its message in the same pass";
}

TEST_F(WhileOkRuns, ATickOfTheNextConfigurationStays) {
    then([] { select("Flag"); });
    EXPECT_EQ(press_ok(close_window), 0);
    EXPECT_EQ(text_value(agent_key, "Flag"), "true");
}

TEST_F(WhileOkRuns, AChoiceOfTheNextConfigurationStays) {
    then([] { select("Colour"); });
    EXPECT_EQ(press_ok(close_window), 0);
    EXPECT_EQ(text_value(agent_key, "Colour"), "green");
}

TEST_F(WhileOkRuns, TheSessionIsKeptAndItsUserToldWhy) {
    LRESULT may_end = 1;
    std::wstring reason;
    EXPECT_EQ(press_ok([&] {
                  may_end = ask_to_end_session();
                  reason = substitute::shutdown_block_reason(main_window);
              }),
              0);
    EXPECT_EQ(may_end, 0);
    EXPECT_EQ(reason, L"Settings are being saved and the agent's service is being restarted.");
    EXPECT_EQ(substitute::call_count("ShutdownBlockReasonDestroy"), 1);
}

TEST_F(WhileOkRuns, TheSessionMayEndAtEveryOtherMoment) {
    std::vector<LRESULT> may_end;
    std::wstring reason = L"some";
    then([&] { may_end.push_back(ask_to_end_session()); });
    boxes.while_shown([] {}); // the question
    boxes.while_shown([&] {   // the fatal text
        may_end.push_back(ask_to_end_session());
        reason = substitute::shutdown_block_reason(main_window);
    });
    EXPECT_EQ(press_ok([] { substitute::fail_call("RegOpenKeyExA"); }), 1);
    EXPECT_THAT(may_end, ElementsAre(1, 1));
    EXPECT_EQ(reason, L"");
}

/// Any quit message, whoever posted it and when.
TEST_F(WhileOkRuns, AFatalTextIsSeenInSpiteOfAQuitMessage) {
    then([] {
        PostQuitMessage(0);
        substitute::fail_call("CreateWindowExA");
        select("Flag");
    });
    EXPECT_EQ(run(), 1);
    ASSERT_THAT(boxes.captions(), ElementsAre("Error!"));
    EXPECT_EQ(boxes.seen()[0].text, "Unable to create group box");
}

} // namespace
