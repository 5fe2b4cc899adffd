// The main window is closed from outside while the apply sequence waits for the service.
#include "app/main_window_controls.h"
#include "platform/substitute/control.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/main_handle.h"

#include <gmock/gmock.h>

namespace {

constexpr char first_spec[] =
    "SOFTWARE\\TavrinTests\\Agent\nFirst\nTavrinAgent\n!All\n$Name\nName\nh\nString\n";
constexpr char second_spec[] =
    "SOFTWARE\\TavrinTests\\Agent\nSecond\nNoSuchService\n!All\n$Flag\nFlag\nh\nBoolean\n"
    "$Colour\nColour\nh\nOptions\nred\ngreen\nblue\n$Text\nText\nh\nString\n";

class ClosedWhileStopping : public ProgramTest {
protected:
    void SetUp() override {
        substitute::set_service("TavrinAgent", {.stop_time = 2000});
        spec_file("A", first_spec);
        spec_file("B", second_spec);
        set_text(agent_key, "Name", "web1");
        set_text(agent_key, "Flag", "true");
        set_text(agent_key, "Colour", "green");
        then([] { select("Name"); });
        then([] { SetWindowTextA(page_controls().at(0), "web2"); });
    }
    /// Presses OK, agrees to the restart, and has the window closed while the service stops.
    void close_while_stopping() {
        then([this] {
            boxes.answer(IDYES);
            substitute::when_peeked([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
            SendMessageA(control(ok_id), BM_CLICK, 0, 0);
        });
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(text_value(agent_key, "Name"), "web2");
        EXPECT_EQ(substitute::service_state("TavrinAgent"), static_cast<DWORD>(SERVICE_RUNNING));
        EXPECT_EQ(main_window, nullptr);
    }
};

TEST_F(ClosedWhileStopping, TheShownTextIsWrittenAsTheUserLeftIt) { close_while_stopping(); }

TEST_F(ClosedWhileStopping, ATextOfTheNextConfigurationIsWrittenAsTheUserLeftIt) {
    then([] { select("Text"); });
    then([] { SetWindowTextA(page_controls().at(0), "some text"); });
    close_while_stopping();
    EXPECT_EQ(text_value(agent_key, "Text"), "some text");
}

TEST_F(ClosedWhileStopping, ATickOfTheNextConfigurationStays) {
    then([] { select("Flag"); });
    close_while_stopping();
    EXPECT_EQ(text_value(agent_key, "Flag"), "true");
}

TEST_F(ClosedWhileStopping, AChoiceOfTheNextConfigurationStays) {
    then([] { select("Colour"); });
    close_while_stopping();
    EXPECT_EQ(text_value(agent_key, "Colour"), "green");
}

TEST_F(ClosedWhileStopping, WhatIsStillToBeSaidHasNoOwner) {
    then([] { select("Text"); });
    then([] { SetWindowTextA(page_controls().at(0), "some text"); });
    close_while_stopping();
    ASSERT_EQ(boxes.seen().size(), 2u);
    EXPECT_EQ(boxes.seen()[1].caption, "Service must be restarted manually");
    EXPECT_EQ(boxes.seen()[1].owner, nullptr);
}

} // namespace
