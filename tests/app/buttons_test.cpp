#include "app/main_window_controls.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/main_handle.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr char one_text[] = "SOFTWARE\\TavrinTests\\Agent\nPlain\n!All\n$Agent name\nName\nh\nString\n";
constexpr UINT custom_draw = 0U - 12U; // what a button with a theme tells its parent whenever it is painted
constexpr std::size_t too_often = 5;

WNDPROC close_button = nullptr;
std::vector<std::string> texts;

/// A button with a theme paints itself within the change of its text.
LRESULT CALLBACK note_text_and_paint(HWND button, UINT message, WPARAM wparam, LPARAM lparam) {
    const LRESULT result = CallWindowProcA(close_button, button, message, wparam, lparam);
    if (message == WM_SETTEXT && texts.size() < too_often) {
        texts.emplace_back(reinterpret_cast<const char*>(lparam));
        NMHDR header{button, static_cast<UINT_PTR>(close_id), custom_draw};
        SendMessageA(main_window, WM_NOTIFY, static_cast<WPARAM>(close_id),
                     reinterpret_cast<LPARAM>(&header));
    }
    return result;
}

class Buttons : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        texts.clear();
    }
    static void watch_close_button() {
        close_button = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
            control(close_id), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&note_text_and_paint)));
    }
};

TEST_F(Buttons, ThatArePaintedWhileTheyChangeAreChangedOnce) {
    spec_file("A", one_text);
    set_text(agent_key, "Name", "web1");
    then([] { select("Agent name"); });
    then([] { watch_close_button(); });
    then([] { SetWindowTextA(page_controls().at(0), "web2"); });
    then([] { SetWindowTextA(page_controls().at(0), "web1"); });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(texts, ElementsAre("Cancel", "Close"));
}

} // namespace
