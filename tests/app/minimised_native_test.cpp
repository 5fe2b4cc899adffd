// Where the focus is after the window was minimised, however it comes back.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

#include <utility>

namespace {

void minimise() { substitute::click_frame(main_window, HTMINBUTTON); }
void restore() { SendMessageA(main_window, WM_SYSCOMMAND, SC_RESTORE, 0); }

class Minimised : public ProgramTest {
protected:
    void SetUp() override {
        spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nAgent\n!All\n$Folder\nFolder\nh\nDirectory\n");
        then([] { select("Folder"); });
    }
    /// Minimises the window while `control` has the focus, does `meanwhile` and restores it.
    void expect_focus_back(std::function<HWND()> control, std::function<void()> meanwhile) {
        HWND focus = nullptr;
        then([control] { SetFocus(control()); });
        then(minimise);
        then([&] { EXPECT_TRUE(IsWindow(main_window)); });
        then(std::move(meanwhile));
        then(restore);
        then([&] { focus = GetFocus(); });
        then([&] { EXPECT_EQ(focus, control()); });
        EXPECT_EQ(run(), 0);
    }
    static void visit_another_program() {
        substitute::leave_program();
        substitute::return_to_program();
    }
};

TEST_F(Minimised, TheTreeHasTheFocusAgain) {
    expect_focus_back([] { return control(tree_id); }, visit_another_program);
}
TEST_F(Minimised, AnEditControlHasTheFocusAgain) {
    expect_focus_back([] { return page_controls().at(0); }, visit_another_program);
}
TEST_F(Minimised, AButtonHasTheFocusAgain) {
    expect_focus_back([] { return page_controls().at(1); }, visit_another_program);
}
TEST_F(Minimised, AControlHasTheFocusAgainWhenNothingHappened) {
    expect_focus_back([] { return page_controls().at(0); }, [] {});
}
TEST_F(Minimised, AControlHasTheFocusAgainFromAnotherProgram) {
    expect_focus_back([] { return page_controls().at(0); }, substitute::leave_program);
}

} // namespace
