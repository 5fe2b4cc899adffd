#include "pages/base_entry.h"

#include "store/data_manipulator.h"
#include "support/page.h"
#include "support/system.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

#include <utility>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An entry without a control of its own that records the operations called on it.
class NotingEntry final : public BaseEntry, public NoDataManipulator {
public:
    explicit NotingEntry(std::string_view subspec) : BaseEntry(subspec) {}

    void createControls(HWND parent) override {
        log.emplace_back("create");
        BaseEntry::createControls(parent);
    }
    void destroyControls(HWND parent) override {
        log.emplace_back("destroy");
        BaseEntry::destroyControls(parent);
    }
    void layout(HWND parent) override {
        log.emplace_back("layout");
        BaseEntry::layout(parent);
    }
    void showValue() override { log.emplace_back("show"); }
    void takeValue() override { log.emplace_back("take"); }
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override {
        if (message == WM_APP + 77) {
            handled.push_back({window, wparam, lparam});
            return 4711;
        }
        return BaseEntry::handleMessage(window, message, wparam, lparam);
    }

    struct Handled {
        HWND window;
        WPARAM wparam;
        LPARAM lparam;
        bool operator==(const Handled&) const = default;
    };
    std::vector<std::string> log;
    std::vector<Handled> handled;
};

class Page : public CleanSystem {
protected:
    StandInMainWindow main{801, 400};
    NotingEntry entry{"The title\nValue\nThe help text\nType\n$Next"};
};

TEST_F(Page, SelectCreatesLaysOutAndShows) {
    entry.select(main.window());
    EXPECT_THAT(entry.log, ElementsAre("create", "layout", "show"));
}

TEST_F(Page, DeselectTakesAndDestroys) {
    entry.select(main.window());
    entry.log.clear();
    entry.deselect(main.window());
    EXPECT_THAT(entry.log, ElementsAre("take", "destroy"));
    EXPECT_THAT(children_of(main.window()), IsEmpty());
}

TEST_F(Page, MayBeSelectedAgain) {
    entry.select(main.window());
    entry.deselect(main.window());
    entry.select(main.window());
    EXPECT_EQ(main.controls().size(), 1U);
    EXPECT_EQ(entryByGroupBox.size(), 1U);
}

TEST_F(Page, DoubleSelectionOnlyTellsTheErrorStream) {
    entry.select(main.window());
    entry.log.clear();
    testing::internal::CaptureStderr();
    entry.select(main.window());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Double selection!\n");
    EXPECT_THAT(entry.log, IsEmpty());
    EXPECT_EQ(children_of(main.window()).size(), 1U);
    entry.deselect(main.window());
    EXPECT_THAT(entry.log, ElementsAre("take", "destroy"));
}

TEST_F(Page, DoubleDeselectionOnlyTellsTheErrorStream) {
    testing::internal::CaptureStderr();
    entry.deselect(main.window());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Double deselection!\n");
    EXPECT_THAT(entry.log, IsEmpty());
}

TEST_F(Page, IsFramedByAGroupBoxWithTheTitle) {
    entry.createControls(main.window());
    const HWND box = main.group_box();
    EXPECT_EQ(class_of(box), "Button");
    EXPECT_EQ(text_of(box), "The title");
    EXPECT_EQ(style_of(box), WS_CHILD | WS_VISIBLE | BS_GROUPBOX);
    EXPECT_EQ(extended_style_of(box) & WS_EX_CLIENTEDGE, 0);
    EXPECT_EQ(GetDlgCtrlID(box), -1);
    EXPECT_EQ(placement_of(box), (Placement{0, 0, 0, 0}));
    EXPECT_EQ(font_of(box), nullptr);
    EXPECT_EQ(GetParent(box), main.window());
}

TEST_F(Page, HoldsTheHelpText) {
    entry.createControls(main.window());
    const HWND help = main.control(0);
    EXPECT_EQ(class_of(help), "Static");
    EXPECT_EQ(text_of(help), "The help text");
    EXPECT_EQ(style_of(help), WS_CHILD | WS_VISIBLE);
    EXPECT_EQ(GetDlgCtrlID(help), -1);
    EXPECT_EQ(placement_of(help), (Placement{0, 0, 1, 1}));
    EXPECT_EQ(font_of(help), GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_EQ(GetParent(help), main.group_box());
}

TEST_F(Page, HoldsAnEmptyHelpTextToo) {
    NotingEntry bare{"Title\nValue\n\nType"};
    bare.select(main.window());
    ASSERT_EQ(main.controls().size(), 1U);
    EXPECT_EQ(text_of(main.control(0)), "");
    EXPECT_EQ(class_of(main.control(0)), "Static");
}

TEST_F(Page, FillsTheRightHalfAboveTheButtons) {
    entry.select(main.window());
    EXPECT_EQ(placement_of(main.group_box()), (Placement{410, 10, 380, 350}));
    EXPECT_EQ(placement_of(main.control(0)), (Placement{10, 20, 360, 290}));
    main.resize(436, 229);
    entry.layout(main.window());
    EXPECT_EQ(placement_of(main.group_box()), (Placement{228, 10, 198, 179}));
    EXPECT_EQ(placement_of(main.control(0)), (Placement{10, 20, 178, 119}));
}

TEST_F(Page, OfAWindowTooNarrowIsEmptyAndComesBack) {
    entry.select(main.window());
    main.resize(30, 40);
    entry.layout(main.window());
    // The widths and heights that are passed on are negative, which the system treats as 0.
    EXPECT_EQ(placement_of(main.group_box()), (Placement{25, 10, 0, 0}));
    main.resize(801, 400);
    entry.layout(main.window());
    EXPECT_EQ(placement_of(main.group_box()), (Placement{410, 10, 380, 350}));
}

TEST_F(Page, RoutesTheMessagesOfItsFrame) {
    NotingEntry other{"Other"};
    entry.select(main.window());
    const HWND box = main.group_box();
    other.select(main.window());
    EXPECT_EQ(SendMessageA(box, WM_APP + 77, 1, -2), 4711);
    EXPECT_THAT(entry.handled, ElementsAre(NotingEntry::Handled{box, 1, -2}));
    EXPECT_THAT(other.handled, IsEmpty());
}

TEST_F(Page, LeavesOtherMessagesToTheFramesOwnProcedure) {
    entry.select(main.window());
    EXPECT_EQ(SendMessageA(main.group_box(), WM_GETDLGCODE, 0, 0), DLGC_STATIC);
    SetWindowTextA(main.group_box(), "renamed");
    EXPECT_EQ(text_of(main.group_box()), "renamed");
}

TEST_F(Page, ThatIsGoneGetsNoMessages) {
    entry.select(main.window());
    const HWND box = main.group_box();
    entryByGroupBox.erase(box);
    EXPECT_EQ(SendMessageA(box, WM_APP + 77, 1, 2), 0);
    EXPECT_THAT(entry.handled, IsEmpty());
    // The default procedure answers 0; that of the frame would answer DLGC_STATIC.
    EXPECT_EQ(SendMessageA(box, WM_GETDLGCODE, 0, 0), 0);
}

TEST_F(Page, IsForgottenOnceDestroyed) {
    entry.select(main.window());
    const HWND box = main.group_box();
    ASSERT_EQ(entryByGroupBox.count(box), 1U);
    EXPECT_EQ(entryByGroupBox.at(box), &entry);
    entry.deselect(main.window());
    EXPECT_THAT(entryByGroupBox, IsEmpty());
    EXPECT_FALSE(IsWindow(box));
}

TEST_F(Page, LosesTheHelpTextFirst) {
    entry.select(main.window());
    const HWND box = main.group_box();
    const HWND help = main.control(0);
    entry.deselect(main.window());
    EXPECT_THAT(main.destroyed(), ElementsAre(help, box));
}

TEST_F(Page, LetsWhatIsThrownDuringTheCreationOfItsControlsThrough) {
    for (const char* window_class : {"Button", "Static"}) {
        StandInMainWindow::when_created([&](HWND control) {
            if (class_of(control) == window_class)
                throw std::string("thrown for ") + window_class;
        });
        NotingEntry thrown_over{"Title"};
        EXPECT_EQ(thrown_text([&] { thrown_over.select(main.window()); }),
                  std::string("thrown for ") + window_class);
        EXPECT_THAT(thrown_over.log, ElementsAre("create"));
        entryByGroupBox.clear();
    }
}

/// What a themed control asks the box behind it to draw, and what then lies below the control.
class Ground : public Page {
protected:
    COLORREF after(UINT message) {
        entry.select(main.window());
        ShowWindow(main.window(), SW_SHOW);
        const HDC context = GetDC(main.window());
        const RECT all{0, 0, 200, 200};
        FillRect(context, &all, reinterpret_cast<HBRUSH>(INT_PTR{COLOR_HIGHLIGHT + 1}));
        constexpr LPARAM client_area = 4;
        SendMessageA(main.group_box(), message, reinterpret_cast<WPARAM>(context), client_area);
        const COLORREF colour = GetPixel(context, 100, 100);
        ReleaseDC(main.window(), context);
        entry.deselect(main.window());
        return colour;
    }
};

TEST_F(Ground, OfThePagesControlsIsTheColourOfButtons) {
    ASSERT_NE(GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(after(WM_ERASEBKGND), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(after(WM_PRINTCLIENT), GetSysColor(COLOR_BTNFACE));
}

} // namespace
