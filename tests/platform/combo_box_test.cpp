#include "support/test_window.h"
#include "support/user.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ComboBox : public TestWindow {
protected:
    HWND combo = nullptr;

    void SetUp() override {
        TestWindow::SetUp();
        combo = add("ComboBox", CBS_DROPDOWNLIST);
        forget();
    }
    LRESULT add_string(const char* text) {
        return SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    void fill() {
        add_string("beta");
        add_string("Alpha");
        add_string("gamma");
    }
    LRESULT selected() const { return SendMessageA(combo, CB_GETCURSEL, 0, 0); }
    /// How often the user's choice was reported.
    int choices() const {
        const auto codes = commands(combo);
        return static_cast<int>(std::count(codes.begin(), codes.end(), CBN_SELCHANGE));
    }
};

TEST_F(ComboBox, KeepsTheOrderInWhichTextsAreAdded) {
    EXPECT_EQ(add_string("beta"), 0);
    EXPECT_EQ(add_string("Alpha"), 1);
    EXPECT_EQ(add_string("beta"), 2);
    EXPECT_EQ(SendMessageA(combo, CB_GETCOUNT, 0, 0), 3);
    char text[16] = "";
    EXPECT_EQ(SendMessageA(combo, CB_GETLBTEXT, 1, reinterpret_cast<LPARAM>(text)), 5);
    EXPECT_STREQ(text, "Alpha");
    EXPECT_EQ(SendMessageA(combo, CB_GETLBTEXTLEN, 0, 0), 4);
    EXPECT_EQ(SendMessageA(combo, CB_GETLBTEXTLEN, 3, 0), CB_ERR);
}

TEST_F(ComboBox, AnswersAnErrorWhileNothingIsSelected) {
    EXPECT_EQ(selected(), CB_ERR);
    fill();
    EXPECT_EQ(selected(), CB_ERR);
    EXPECT_EQ(text_of(combo), "");
}

TEST_F(ComboBox, AProgramsChoiceIsNotReported) {
    fill();
    EXPECT_EQ(SendMessageA(combo, CB_SETCURSEL, 2, 0), 2);
    EXPECT_EQ(selected(), 2);
    EXPECT_EQ(text_of(combo), "gamma");
    EXPECT_THAT(commands(combo), IsEmpty());
}

TEST_F(ComboBox, MinusOneTakesTheSelectionAway) {
    fill();
    SendMessageA(combo, CB_SETCURSEL, 1, 0);
    EXPECT_EQ(SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(-1), 0), CB_ERR);
    EXPECT_EQ(selected(), CB_ERR);
    SendMessageA(combo, CB_SETCURSEL, 1, 0);
    EXPECT_EQ(SendMessageA(combo, CB_SETCURSEL, 3, 0), CB_ERR);
    EXPECT_EQ(selected(), 1) << "an index beyond the end changes nothing";
}

TEST_F(ComboBox, ArrowKeysChooseAndReport) {
    fill();
    SetFocus(combo);
    forget();
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), 0);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SELENDOK, CBN_SELCHANGE));
    press_key(VK_DOWN);
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), 2);
    EXPECT_EQ(choices(), 3);
    press_key(VK_DOWN);
    pump_messages();
    EXPECT_EQ(selected(), 2) << "there is nothing below the last";
    press_key(VK_UP);
    pump_messages();
    EXPECT_EQ(selected(), 1);
}

TEST_F(ComboBox, ALetterGoesToTheNextTextThatBeginsWithIt) {
    fill();
    add_string("green");
    SetFocus(combo);
    type_text("g");
    pump_messages();
    EXPECT_EQ(selected(), 2);
    EXPECT_EQ(choices(), 1);
    type_text("g");
    pump_messages();
    EXPECT_EQ(selected(), 3);
    type_text("x");
    pump_messages();
    EXPECT_EQ(selected(), 3);
    EXPECT_EQ(choices(), 2);
}

TEST_F(ComboBox, AnEmptyListHasNothingToChoose) {
    SetFocus(combo);
    press_key(VK_DOWN);
    type_text("x");
    pump_messages();
    EXPECT_EQ(selected(), CB_ERR);
    EXPECT_EQ(choices(), 0);
}

TEST_F(ComboBox, ItsHeightIsThatOfTheOpenedList) {
    SetWindowPos(combo, nullptr, 10, 40, 150, 140, SWP_NOZORDER);
    const RECT place = place_of(combo);
    EXPECT_EQ(place.left, 10);
    EXPECT_EQ(place.top, 40);
    EXPECT_EQ(place.right, 160);
    EXPECT_GT(place.bottom - place.top, 10);
    EXPECT_LT(place.bottom - place.top, 40) << "closed, it is one line high";
}

TEST_F(ComboBox, TellsHowHighItsFieldAndItsRowsAre) {
    fill();
    const LRESULT row = SendMessageA(combo, CB_GETITEMHEIGHT, 0, 0);
    EXPECT_GE(row, 10);
    EXPECT_LE(row, 20);
    const LRESULT field = SendMessageA(combo, CB_GETITEMHEIGHT, static_cast<WPARAM>(-1), 0);
    EXPECT_GE(field, row);
    EXPECT_LT(field, place_of(combo).bottom - place_of(combo).top);
}

TEST_F(ComboBox, FocusIsReportedToTheParent) {
    fill();
    SetFocus(combo);
    SetFocus(window);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SETFOCUS, CBN_SELENDCANCEL, CBN_KILLFOCUS));
}

TEST_F(ComboBox, TakesTenThousandTexts) {
    for (int i = 0; i < 10000; ++i)
        ASSERT_EQ(add_string(("option " + std::to_string(i)).c_str()), i);
    SendMessageA(combo, CB_SETCURSEL, 9999, 0);
    EXPECT_EQ(text_of(combo), "option 9999");
}

TEST_F(ComboBox, EnterAcceptsWhatIsChosenInTheOpenList) {
    fill();
    SetFocus(combo);
    forget();
    click_on(combo);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0), TRUE);
    press_key(VK_DOWN);
    press_key(VK_RETURN);
    pump_messages();
    EXPECT_EQ(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0), FALSE);
    EXPECT_EQ(selected(), 0);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_DROPDOWN, CBN_SELCHANGE, CBN_SELENDOK, CBN_CLOSEUP));
}

TEST_F(ComboBox, LeavingClosesTheOpenList) {
    fill();
    SetFocus(combo);
    click_on(combo);
    pump_messages();
    press_key(VK_DOWN);
    pump_messages();
    forget();
    SetFocus(window);
    EXPECT_EQ(SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0), FALSE);
    EXPECT_EQ(selected(), 0);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SELENDCANCEL, CBN_CLOSEUP, CBN_KILLFOCUS));
}

TEST_F(ComboBox, EscapeClosesTheOpenListAndLeavesTheChoice) {
    fill();
    SetFocus(combo);
    click_on(combo);
    pump_messages();
    press_key(VK_DOWN);
    pump_messages();
    forget();
    press_key(VK_ESCAPE);
    pump_messages();
    EXPECT_EQ(selected(), 0);
    EXPECT_THAT(commands(combo), ElementsAre(CBN_SELENDCANCEL, CBN_CLOSEUP));
}

TEST_F(ComboBox, OnlyTheOpenListTakesEnterAndEscapeFromTheDialogNavigation) {
    MSG enter{combo, WM_KEYDOWN, VK_RETURN, 0, 0, {0, 0}};
    const auto code = [&] {
        return SendMessageA(combo, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter));
    };
    fill();
    EXPECT_EQ(code(), DLGC_WANTARROWS | DLGC_WANTCHARS);
    SetFocus(combo);
    click_on(combo);
    pump_messages();
    EXPECT_EQ(code(), DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_WANTMESSAGE);
}

} // namespace
