#include "app/main_window_controls.h"
#include "pages/configuration.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>
#include <tuple>

namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// An empty server list: the test makes no connection and shows its box immediately.
constexpr char every_kind[] =
    "SOFTWARE\\TavrinTests\\Agent\nTested\n"
    "!All\n$Name\nName\nh\nString\n$Number\nNumber\nh\nInteger\n$Flag\nFlag\nh\nBoolean\n"
    "$Colour\nColour\nh\nOptions\nred\ngreen\nblue\n$Modem\nModem\nh\nCOM\n$Folder\nFolder\nh\nDirectory\n"
    "$Servers\nServers\nh\nServerList\n$Port\nPort\nh\nInteger\n$Domain\nDomain\nh\nString\n"
    "$Test\n\nh\nConnectionTest\nName\nDomain\nServers\nPort\n";
constexpr char untested[] = "SOFTWARE\\TavrinTests\\Agent\nUntested\n!Else\n$Plain\nPlain\nh\nString\n";

class LeavingAPage : public ProgramTest {
protected:
    /// The page is shown and a box has sent the focus away and back; the page's first control has it.
    void open(const std::string& node) {
        spec_file("A", every_kind);
        spec_file("B", untested);
        for (const char* const name : {"Name", "Folder"})
            set_text(agent_key, name, "web1");
        set_text(agent_key, "Flag", "true");
        set_text(agent_key, "Colour", "blue");
        set_text(agent_key, "Number", "42");
        set_text(agent_key, "Modem", "");
        then([node] { select(node); });
        then([] { SetFocus(control(tree_id)); });
        then(leave_and_return);
        then([] { SetFocus(page_controls().at(0)); });
    }
    /// Another window gets the focus, and with its end the main window is back.
    static void leave_and_return() {
        const HWND other = open_other();
        SetFocus(other);
        DestroyWindow(other);
        SetFocus(main_window);
    }
    static HWND open_other() {
        return CreateWindowExA(0, "Static", "other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                               GetModuleHandleA(nullptr), nullptr);
    }
    void expect_buttons(const char* close_text, bool ok_enabled) {
        then([=] {
            EXPECT_EQ(text_of(control(close_id)), close_text);
            EXPECT_EQ(IsWindowEnabled(control(ok_id)) != FALSE, ok_enabled);
        });
    }
    void expect_text(const std::string& text) {
        then([text] { EXPECT_EQ(text_of(page_controls().at(0)), text); });
    }
};

/// What a page holds when it is left.
struct Held {
    const char* title;
    const char* typed;
    const char* value;
    /// What the control shows when the page is opened again.
    std::string (*look)(HWND);
    const char* shown;
};
void PrintTo(const Held& held, std::ostream* out) { *out << held.title; }

std::string tick_of(HWND box) { return SendMessageA(box, BM_GETCHECK, 0, 0) == BST_CHECKED ? "x" : ""; }
std::string choice_of(HWND list) { return std::to_string(SendMessageA(list, CB_GETCURSEL, 0, 0)); }

/// Its entry, the node for which it is left, and whether one of its controls has the focus then.
class LeavingEachPage : public LeavingAPage,
                        public testing::WithParamInterface<std::tuple<Held, const char*, bool>> {
protected:
    static std::string value_of(const std::string& title) {
        return configurations.at("Tested")->text_by_title(title);
    }
};

TEST_P(LeavingEachPage, KeepsWhatItHolds) {
    const Held held = std::get<0>(GetParam());
    const std::string node = std::get<1>(GetParam());
    const bool focused = std::get<2>(GetParam());
    const bool changes = *held.typed != '\0';
    open(held.title);
    then([&] { type_text(held.typed); });
    if (!focused)
        then([] { SetFocus(control(tree_id)); });
    then([&] { select(node); });
    then([&] { EXPECT_EQ(value_of(held.title), held.value); });
    expect_buttons(changes ? "Cancel" : "Close", changes);
    then([&] { select(held.title); });
    then([&] { EXPECT_EQ(held.look(page_controls().at(0)), held.shown); });
    expect_buttons(changes ? "Cancel" : "Close", changes);
    then([&] { SendMessageA(control(changes ? ok_id : close_id), BM_CLICK, 0, 0); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(text_value(agent_key, held.title), held.value);
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, LeavingEachPage,
                         testing::Combine(testing::Values(Held{"Name", "x", "xweb1", text_of, "xweb1"},
                                                          Held{"Folder", "x", "xweb1", text_of, "xweb1"},
                                                          Held{"Number", "7", "742", text_of, "742"},
                                                          Held{"Flag", "", "true", tick_of, "x"},
                                                          Held{"Colour", "", "blue", choice_of, "2"},
                                                          Held{"Modem", "", "", choice_of, "-1"}),
                                          testing::Values("Plain", "All"), testing::Bool()));

TEST_F(LeavingAPage, ForANodeWithoutOneTakesItDown) {
    open("Flag");
    then([] { select("All"); });
    then([] { EXPECT_EQ(page(), nullptr); });
    then([] { select("Flag"); });
    then([] { SendMessageA(page_controls().at(0), BM_CLICK, 0, 0); });
    then([] { select("Tested"); });
    then([] {
        EXPECT_EQ(page(), nullptr);
        EXPECT_EQ(configurations.at("Tested")->text_by_title("Flag"), "false");
    });
    expect_buttons("Cancel", true);
    EXPECT_EQ(run(), 0);
}

WNDPROC left_procedure = nullptr;
HWND focus_went_to = nullptr;

LRESULT CALLBACK note_where_the_focus_goes(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_KILLFOCUS)
        focus_went_to = reinterpret_cast<HWND>(wparam);
    return CallWindowProcA(left_procedure, window, message, wparam, lparam);
}

/// The focus moves to the tree before the control is destroyed: afterwards, systems differ in where they move
/// it.
TEST_F(LeavingAPage, GivesTheFocusToTheTree) {
    focus_went_to = nullptr;
    open("Name");
    then([] {
        left_procedure = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
            page_controls().at(0), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&note_where_the_focus_goes)));
    });
    then([] { select("Plain"); });
    then([] {
        EXPECT_EQ(GetFocus(), control(tree_id));
        EXPECT_EQ(focus_went_to, control(tree_id));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingAPage, AHiddenTestConnectionDoesNotKeepTheFocus) {
    open("Name");
    then([] { SetFocus(control(test_connection_id)); });
    then([] { SendMessageA(control(test_connection_id), BM_CLICK, 0, 0); });
    then([&] { EXPECT_THAT(boxes.seen(), SizeIs(1)); });
    then([] { EXPECT_EQ(GetFocus(), control(test_connection_id)); });
    then([] { select("Plain"); });
    then([] {
        EXPECT_FALSE(IsWindowVisible(control(test_connection_id)));
        EXPECT_EQ(GetFocus(), control(tree_id));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingAPage, AnOkThatIsDisabledDoesNotKeepTheFocus) {
    open("Name");
    then([] { type_text("x"); });
    then([] { SetFocus(control(ok_id)); });
    then([] { SetWindowTextA(page_controls().at(0), "web1"); });
    then([] {
        EXPECT_FALSE(IsWindowEnabled(control(ok_id)));
        EXPECT_EQ(GetFocus(), control(tree_id));
    });
    EXPECT_EQ(run(), 0);
}

/// Leaving the whole window and coming back.
class LeavingTheWindow : public LeavingAPage {
protected:
    void come_back_by(std::function<void()> away, std::function<void()> back) {
        open("Name");
        then(std::move(away));
        then(std::move(back));
        then([] { EXPECT_EQ(GetFocus(), page_controls().at(0)); });
        then([] { type_text("x"); });
        expect_text("xweb1");
    }
};

TEST_F(LeavingTheWindow, MinimisedAndRestoredItGivesTheFocusToTheSameControl) {
    come_back_by([] { ShowWindow(main_window, SW_MINIMIZE); }, [] { ShowWindow(main_window, SW_RESTORE); });
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingTheWindow, BehindAnotherOneItGivesTheFocusToTheSameControl) {
    come_back_by(leave_and_return, [] {});
    EXPECT_EQ(run(), 0);
}

TEST_F(LeavingTheWindow, TheTreeGetsTheFocusForAControlThatIsGone) {
    open("Name");
    then([] {
        const HWND other = open_other();
        SetFocus(other);
        select("Plain");
        DestroyWindow(other);
        SetFocus(main_window);
    });
    then([] { EXPECT_EQ(GetFocus(), control(tree_id)); });
    EXPECT_EQ(run(), 0);
}

/// A tree that notifies its parent while it is made, as some do when they make their tooltip.
class EarlyTree {
public:
    EarlyTree() {
        WNDCLASSEXA description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleA(nullptr);
        description.lpszClassName = "SysTreeView32";
        RegisterClassExA(&description);
    }
    EarlyTree(const EarlyTree&) = delete;
    EarlyTree& operator=(const EarlyTree&) = delete;
    ~EarlyTree() { UnregisterClassA("SysTreeView32", GetModuleHandleA(nullptr)); }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        if (message == WM_CREATE) {
            NMHDR header{window, tree_id, NM_SETFOCUS};
            SendMessageA(GetParent(window), WM_NOTIFY, tree_id, reinterpret_cast<LPARAM>(&header));
        }
        return DefWindowProcA(window, message, wparam, lparam);
    }
};

TEST_F(LeavingTheWindow, ANotificationBeforeTheButtonsAreThereIsNotTheFirstUpdate) {
    const EarlyTree tree;
    expect_buttons("Close", false);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

} // namespace
