#include "support/recorder.h"
#include "support/test_window.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool operator==(const RECT& left, const RECT& right) {
    return left.left == right.left && left.top == right.top && left.right == right.right &&
           left.bottom == right.bottom;
}

class WindowPlacement : public RecorderTest {
protected:
    HWND window = nullptr;

    void SetUp() override {
        RecorderTest::SetUp();
        window = open("main", WS_OVERLAPPEDWINDOW | WS_VISIBLE);
        watch({WM_SIZE, WM_MOVE});
    }
};

TEST_F(WindowPlacement, AFrameLeavesLessRoomInside) {
    SetWindowPos(window, nullptr, 20, 30, 436, 229, SWP_NOZORDER);
    RECT outer{};
    GetWindowRect(window, &outer);
    EXPECT_TRUE(outer == (RECT{20, 30, 456, 259}));
    const POINT client = client_size_of(window);
    EXPECT_LT(client.x, 436);
    EXPECT_GT(client.x, 400);
    EXPECT_LT(client.y, 229);
    EXPECT_GT(client.y, 170);
    POINT origin{0, 0};
    MapWindowPoints(window, nullptr, &origin, 1);
    EXPECT_GT(origin.x, 20);
    EXPECT_GT(origin.y, 30 + 10) << "below the caption";
}

TEST_F(WindowPlacement, AChildIsPlacedInItsParentsClientArea) {
    const HWND child = open_child("child", window);
    EXPECT_TRUE(SetWindowPos(child, nullptr, 7, 9, 120, 40, SWP_NOZORDER));
    EXPECT_TRUE(place_of(child) == (RECT{7, 9, 127, 49}));
    EXPECT_EQ(client_size_of(child).x, 120);
    EXPECT_EQ(client_size_of(child).y, 40);
    SetWindowPos(window, nullptr, 60, 70, 0, 0, SWP_NOZORDER | SWP_NOSIZE);
    EXPECT_TRUE(place_of(child) == (RECT{7, 9, 127, 49})) << "children move along";
}

TEST_F(WindowPlacement, SizeAndPlaceAreReportedOnlyWhenTheyChange) {
    const HWND child = open_child("child", window);
    SetWindowPos(child, nullptr, 10, 10, 100, 50, SWP_NOZORDER);
    take_log();
    SetWindowPos(child, nullptr, 10, 10, 100, 50, SWP_NOZORDER);
    EXPECT_THAT(take_log(), IsEmpty());
    SetWindowPos(child, nullptr, 10, 10, 101, 50, SWP_NOZORDER);
    EXPECT_THAT(take_log(), ElementsAre("child size"));
    SetWindowPos(child, nullptr, 11, 10, 101, 50, SWP_NOZORDER);
    EXPECT_THAT(take_log(), ElementsAre("child move"));
    SetWindowPos(child, nullptr, 12, 10, 102, 50, SWP_NOZORDER);
    EXPECT_THAT(take_log(), ElementsAre("child move", "child size"));
}

TEST_F(WindowPlacement, TheMessagesCarryClientSizeAndPlace) {
    const HWND child = open_child("child", window);
    LPARAM size = 0;
    LPARAM place = 0;
    answer(WM_SIZE, [&](HWND, WPARAM, LPARAM lparam) -> LRESULT {
        size = lparam;
        return 0;
    });
    answer(WM_MOVE, [&](HWND, WPARAM, LPARAM lparam) -> LRESULT {
        place = lparam;
        return 0;
    });
    SetWindowPos(child, nullptr, 3, 4, 55, 66, SWP_NOZORDER);
    EXPECT_EQ(size, MAKELPARAM(55, 66));
    EXPECT_EQ(place, MAKELPARAM(3, 4));
}

TEST_F(WindowPlacement, NegativeSizesAreTakenAsZero) {
    const HWND child = open_child("child", window);
    EXPECT_TRUE(SetWindowPos(child, nullptr, 5, 6, -20, -30, SWP_NOZORDER));
    EXPECT_TRUE(place_of(child) == (RECT{5, 6, 5, 6}));
    EXPECT_EQ(client_size_of(child).x, 0);
}

TEST_F(WindowPlacement, FlagsKeepSizeOrPlace) {
    const HWND child = open_child("child", window);
    SetWindowPos(child, nullptr, 5, 6, 70, 80, SWP_NOZORDER);
    SetWindowPos(child, nullptr, 1, 2, 3, 4, SWP_NOZORDER | SWP_NOSIZE);
    EXPECT_TRUE(place_of(child) == (RECT{1, 2, 71, 82}));
    SetWindowPos(child, nullptr, 9, 9, 30, 40, SWP_NOZORDER | SWP_NOMOVE);
    EXPECT_TRUE(place_of(child) == (RECT{1, 2, 31, 42}));
}

TEST_F(WindowPlacement, ASizableWindowHasALeastSizeOfTheSystems) {
    SetWindowPos(window, nullptr, 0, 0, 1, 1, SWP_NOZORDER);
    RECT outer{};
    GetWindowRect(window, &outer);
    EXPECT_GT(outer.right, 50);
    EXPECT_GT(outer.bottom, 20);
}

TEST_F(WindowPlacement, ASunkenEdgeTakesTwoPixelsOnEachSide) {
    const HWND edit = CreateWindowExA(WS_EX_CLIENTEDGE, "Edit", "", WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL, 0,
                                      0, 100, 20, window, nullptr, nullptr, nullptr);
    EXPECT_EQ(client_size_of(edit).x, 96);
    EXPECT_EQ(client_size_of(edit).y, 16);
}

TEST_F(WindowPlacement, AGroupBoxIsAllClientArea) {
    const HWND box = CreateWindowExA(0, "Button", "title", WS_CHILD | WS_VISIBLE | BS_GROUPBOX, 0, 0, 100, 70,
                                     window, nullptr, nullptr, nullptr);
    EXPECT_EQ(client_size_of(box).x, 100);
    EXPECT_EQ(client_size_of(box).y, 70);
}

TEST_F(WindowPlacement, ADialogFrameSurroundsAPopUpWithoutCaption) {
    const HWND popup = CreateWindowExA(WS_EX_DLGMODALFRAME, "Static", "", WS_POPUP | WS_DLGFRAME, 10, 10, 200,
                                       75, window, nullptr, nullptr, nullptr);
    const POINT client = client_size_of(popup);
    EXPECT_LT(client.x, 200);
    EXPECT_GT(client.x, 180);
    EXPECT_LT(client.y, 75);
    EXPECT_GT(client.y, 30);
    DestroyWindow(popup);
}

TEST_F(WindowPlacement, VisibleIsOnlyWhatAllItsParentsShow) {
    const HWND child = open_child("child", window);
    const HWND inner = open_child("inner", child);
    EXPECT_TRUE(IsWindowVisible(inner));
    EXPECT_TRUE(ShowWindow(child, SW_HIDE)) << "it was visible";
    EXPECT_FALSE(IsWindowVisible(inner));
    EXPECT_NE(GetWindowLongPtrA(inner, GWL_STYLE) & WS_VISIBLE, 0);
    EXPECT_FALSE(ShowWindow(child, SW_SHOW)) << "it was hidden";
    EXPECT_TRUE(IsWindowVisible(inner));
    ShowWindow(window, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(inner));
}

TEST_F(WindowPlacement, ShowingAndHidingIsAnnouncedOnlyWhenItChangesSomething) {
    const HWND child = open_child("child", window);
    watch({WM_SHOWWINDOW});
    ShowWindow(child, SW_SHOW);
    EXPECT_THAT(take_log(), IsEmpty());
    ShowWindow(child, SW_HIDE);
    ShowWindow(child, SW_HIDE);
    EXPECT_THAT(take_log(), ElementsAre("child showwindow"));
}

} // namespace
