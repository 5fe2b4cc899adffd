#include "support/test_window.h"
#include "support/user.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Edit : public TestWindow {
protected:
    HWND add_edit(DWORD style = ES_AUTOHSCROLL, const char* text = "") {
        const HWND edit = add("Edit", style | WS_TABSTOP, text, WS_EX_CLIENTEDGE);
        forget();
        return edit;
    }
};

TEST_F(Edit, CreationWithTextReportsNoChange) {
    const HWND edit = add("Edit", ES_AUTOHSCROLL, "text");
    EXPECT_EQ(text_of(edit), "text");
    EXPECT_THAT(commands(edit), Not(Contains(EN_CHANGE)));
}

TEST_F(Edit, SettingTheTextReportsAChange) {
    const HWND edit = add_edit();
    EXPECT_TRUE(SetWindowTextA(edit, "new"));
    EXPECT_THAT(commands(edit), ElementsAre(EN_UPDATE, EN_CHANGE));
    EXPECT_EQ(text_of(edit), "new");
}

TEST_F(Edit, SettingTheSameTextReportsAChange) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, "same");
    SetWindowTextA(edit, "same");
    EXPECT_THAT(commands(edit), ElementsAre(EN_UPDATE, EN_CHANGE));
}

TEST_F(Edit, SettingAnEmptyTextOverAnEmptyOneReportsAChange) {
    const HWND edit = add_edit();
    SetWindowTextA(edit, "");
    EXPECT_THAT(commands(edit), ElementsAre(EN_UPDATE, EN_CHANGE));
}

TEST_F(Edit, AMultiLineEditDoesNotReportAProgramsText) {
    const HWND edit = add_edit(ES_MULTILINE | ES_READONLY | ES_CENTER);
    SetWindowTextA(edit, "Please wait");
    EXPECT_THAT(commands(edit), IsEmpty());
    EXPECT_EQ(text_of(edit), "Please wait");
}

TEST_F(Edit, TypingReportsEveryCharacter) {
    const HWND edit = add_edit();
    SetFocus(edit);
    forget();
    type_text("ab\xE9");
    pump_messages();
    EXPECT_EQ(text_of(edit), "ab\xE9");
    EXPECT_THAT(commands(edit),
                ElementsAre(EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE));
}

TEST_F(Edit, BackspaceTakesOneCharacter) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, "abcd");
    SetFocus(edit);
    press_key(VK_HOME);
    press_key(VK_BACK);
    press_key(VK_RIGHT);
    press_key(VK_BACK);
    pump_messages();
    EXPECT_EQ(text_of(edit), "bcd");
}

TEST_F(Edit, TypingReplacesTheSelection) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, "old");
    SetFocus(edit);
    SendMessageA(edit, EM_SETSEL, 0, -1);
    type_text("new");
    pump_messages();
    EXPECT_EQ(text_of(edit), "new");
}

TEST_F(Edit, ShiftExtendsTheSelection) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, "abcd");
    SetFocus(edit);
    press_key(VK_HOME);
    press_key(VK_RIGHT, true);
    press_key(VK_RIGHT, true);
    type_text("x");
    pump_messages();
    EXPECT_EQ(text_of(edit), "xcd");
}

TEST_F(Edit, ANumberEditRefusesWhatIsNoDigit) {
    const HWND edit = add_edit(ES_NUMBER | ES_AUTOHSCROLL);
    SetFocus(edit);
    forget();
    type_text("a-1 2x");
    pump_messages();
    EXPECT_EQ(text_of(edit), "12");
    EXPECT_THAT(commands(edit), ElementsAre(EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE));
}

TEST_F(Edit, ANumberEditTakesAnyTextFromTheProgram) {
    const HWND edit = add_edit(ES_NUMBER | ES_AUTOHSCROLL);
    SetWindowTextA(edit, "-0x1F");
    EXPECT_EQ(text_of(edit), "-0x1F");
}

TEST_F(Edit, AReadOnlyEditRefusesKeys) {
    const HWND edit = add_edit(ES_READONLY | ES_AUTOHSCROLL, "kept");
    SetFocus(edit);
    forget();
    type_text("x");
    pump_messages();
    EXPECT_EQ(text_of(edit), "kept");
    EXPECT_THAT(commands(edit), IsEmpty());
}

TEST_F(Edit, AUserCanTypeNoMoreThanTheLimit) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, std::string(29999, 'x').c_str());
    SetFocus(edit);
    type_text("ab");
    pump_messages();
    EXPECT_EQ(GetWindowTextLengthA(edit), 30000);
}

TEST_F(Edit, AProgramsTextIsNotLimited) {
    const HWND edit = add_edit();
    const std::string text(100000, 'x');
    SetWindowTextA(edit, text.c_str());
    EXPECT_EQ(GetWindowTextLengthA(edit), 100000);
}

TEST_F(Edit, TextIsReadAsFarAsTheBufferGoes) {
    const HWND edit = add_edit(ES_AUTOHSCROLL, "abcdef");
    char buffer[4] = {'-', '-', '-', '-'};
    EXPECT_EQ(GetWindowTextA(edit, buffer, 4), 3);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(Edit, FocusIsReportedToTheParent) {
    const HWND edit = add_edit();
    SetFocus(edit);
    SetFocus(window);
    EXPECT_THAT(commands(edit), ElementsAre(EN_SETFOCUS, EN_KILLFOCUS));
}

TEST_F(Edit, CountsTheLinesThatItsWidthMakes) {
    const HWND edit = add_edit(ES_MULTILINE | ES_READONLY | ES_CENTER);
    MoveWindow(edit, 0, 0, 190, 60, FALSE);
    SetWindowTextA(edit, "short");
    EXPECT_EQ(SendMessageA(edit, EM_GETLINECOUNT, 0, 0), 1);
    SetWindowTextA(edit, "a text that is much too long to stand in one line of this narrow box");
    EXPECT_GT(SendMessageA(edit, EM_GETLINECOUNT, 0, 0), 1);
    SetWindowTextA(edit, "one\r\ntwo\r\nthree");
    EXPECT_EQ(SendMessageA(edit, EM_GETLINECOUNT, 0, 0), 3);
}

TEST_F(Edit, TakesTheKeysThatEditTextFromTheDialogNavigation) {
    const LRESULT code = SendMessageA(add_edit(), WM_GETDLGCODE, 0, 0);
    EXPECT_EQ(code & (DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL),
              DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL);
}

} // namespace
