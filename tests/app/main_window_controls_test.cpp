#include "app/main_window_controls.h"

#include "support/page.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

TEST(WindowLayout, PlacesTreeAndButtonsFromTheClientRectangle) {
    const RECT client{0, 0, 801, 600};
    EXPECT_EQ(tree_placement(client), (Placement{10, 10, 380, 550}));
    EXPECT_EQ(ok_placement(client), (Placement{631, 570, 80, 25}));
    EXPECT_EQ(close_placement(client), (Placement{716, 570, 80, 25}));
    EXPECT_EQ(test_connection_placement(client), (Placement{5, 570, 120, 25}));
}

TEST(WindowLayout, ATinyClientRectangleGivesNegativeSizes) {
    const RECT client{0, 0, 1, 2};
    EXPECT_EQ(tree_placement(client), (Placement{10, 10, -20, -48}));
    EXPECT_EQ(ok_placement(client), (Placement{-169, -28, 80, 25}));
}

struct Drag {
    const char* name;
    WPARAM edge;
    RECT expected;
};

/// 200 by 100: 236 too narrow, 129 too low.
constexpr RECT too_small{100, 100, 300, 200};

class TooSmallDrag : public testing::TestWithParam<Drag> {};

TEST_P(TooSmallDrag, MovesTheDraggedEdgeBack) {
    RECT proposed = too_small;
    keep_minimum_size(GetParam().edge, proposed);
    EXPECT_EQ(proposed.left, GetParam().expected.left);
    EXPECT_EQ(proposed.top, GetParam().expected.top);
    EXPECT_EQ(proposed.right, GetParam().expected.right);
    EXPECT_EQ(proposed.bottom, GetParam().expected.bottom);
}

INSTANTIATE_TEST_SUITE_P(Edges, TooSmallDrag,
                         testing::Values(Drag{"Left", WMSZ_LEFT, {-136, 100, 300, 200}},
                                         Drag{"Right", WMSZ_RIGHT, {100, 100, 536, 200}},
                                         Drag{"Top", WMSZ_TOP, {100, -29, 300, 200}},
                                         Drag{"Bottom", WMSZ_BOTTOM, {100, 100, 300, 329}},
                                         Drag{"TopLeft", WMSZ_TOPLEFT, {-136, -29, 300, 200}},
                                         Drag{"TopRight", WMSZ_TOPRIGHT, {100, -29, 536, 200}},
                                         Drag{"BottomLeft", WMSZ_BOTTOMLEFT, {-136, 100, 300, 329}},
                                         Drag{"BottomRight", WMSZ_BOTTOMRIGHT, {100, 100, 536, 329}}),
                         [](const auto& at) { return std::string(at.param.name); });

TEST(WindowLayout, ALargeEnoughWindowIsLeftAsItIs) {
    RECT proposed{0, 0, 436, 229};
    keep_minimum_size(WMSZ_TOPLEFT, proposed);
    EXPECT_EQ(proposed.left, 0);
    EXPECT_EQ(proposed.top, 0);
    EXPECT_EQ(proposed.right, 436);
    EXPECT_EQ(proposed.bottom, 229);
}

/// The style bits that the system itself sets and clears.
constexpr LONG_PTR of_system = WS_VISIBLE | WS_CLIPSIBLINGS | WS_DISABLED;

/// Controls are looked up by the numbers that other programs know.
class WindowStyles : public ProgramTest {
protected:
    static void expect_style(HWND window, LONG_PTR style, LONG_PTR extended_style) {
        EXPECT_EQ(style_of(window) & ~of_system, style) << text_of(window);
        EXPECT_EQ(extended_style_of(window) & WS_EX_CLIENTEDGE, extended_style) << text_of(window);
    }
    static void expect_button(int id, const char* text, LONG_PTR style, bool visible) {
        const HWND button = control(id);
        EXPECT_EQ(class_of(button), "Button") << id;
        EXPECT_EQ(text_of(button), text) << id;
        expect_style(button, style, 0);
        EXPECT_EQ(IsWindowVisible(button) != FALSE, visible) << id;
        EXPECT_EQ(font_of(button), static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT))) << id;
    }
};

TEST_F(WindowStyles, OfTheMainWindow) {
    then([] {
        expect_style(main_window, WS_OVERLAPPEDWINDOW, 0);
        EXPECT_TRUE(IsWindowVisible(main_window));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, OfTheTree) {
    then([] {
        EXPECT_EQ(class_of(control(101)), "SysTreeView32");
        expect_style(control(101),
                     WS_CHILD | WS_GROUP | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                         TVS_SHOWSELALWAYS,
                     WS_EX_CLIENTEDGE);
        EXPECT_TRUE(IsWindowVisible(control(101)));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, OfTheButtons) {
    then([] {
        expect_button(103, "Close", WS_CHILD | WS_GROUP | WS_TABSTOP, true);
        expect_button(104, "OK", WS_CHILD, true);
        expect_button(105, "Test Connection", WS_CHILD, false);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(WindowStyles, TheClassHasTheArrowTheDialogBackgroundAndNoStyle) {
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    then([&] { EXPECT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), "trconfigclass", &found)); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(found.hCursor, LoadCursorA(nullptr, IDC_ARROW));
    EXPECT_EQ(found.hbrBackground, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1}));
    EXPECT_EQ(found.style, 0U);
    EXPECT_EQ(found.cbClsExtra, 0);
    EXPECT_EQ(found.cbWndExtra, 0);
    EXPECT_EQ(found.lpszMenuName, nullptr);
}

constexpr char one_text[] = "SOFTWARE\\TavrinTests\\Agent\nPlain\n!All\n$Agent name\nName\nh\nString\n";
constexpr UINT custom_draw = 0U - 12U; // the notification that a themed button sends whenever it is painted
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

int coloured = 0;
WNDPROC uncounted = nullptr;

LRESULT CALLBACK count_colours(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    coloured += message == WM_SYSCOLORCHANGE ? 1 : 0;
    return CallWindowProcA(uncounted, window, message, wparam, lparam);
}

class NewColours : public ProgramTest {
protected:
    /// How many messages the control gets for one to the main window.
    static int told(HWND control) {
        coloured = 0;
        uncounted = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(count_colours)));
        SendMessageA(main_window, WM_SYSCOLORCHANGE, 0, 0);
        SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(uncounted));
        return coloured;
    }
};

TEST_F(NewColours, AreToldToTheControlsAndToThoseOfThePage) {
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nA\n!All\n$Name\nName\nh\nString\n");
    then([] { select("Name"); });
    then([] {
        EXPECT_EQ(told(control(tree_id)), 1);
        EXPECT_EQ(told(control(ok_id)), 1);
        EXPECT_EQ(told(page()), 1);
        EXPECT_EQ(told(page_controls().at(0)), 1);
    });
    EXPECT_EQ(run(), 0);
}

} // namespace
