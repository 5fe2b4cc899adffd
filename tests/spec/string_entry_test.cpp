#include "spec/one_value_test.h"
#include "spec/value_entries.h"

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

// The page of a main window of 436 by 229 is 198 by 179.

class StringPage : public OneEntryTest<StringEntry> {};

TEST_F(StringPage, HasATextBox) {
    set_text("Value", "text");
    entry = std::make_unique<StringEntry>(binding(), "Title", "Help");
    entry->createControls(main.window());
    ASSERT_EQ(main.controls().size(), 2U);
    EXPECT_EQ(text_of(main.control(0)), "Help");
    EXPECT_EQ(class_of(control()), "Edit");
    EXPECT_EQ(text_of(control()), "");
    EXPECT_EQ(style_of(control()), WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL);
    EXPECT_EQ(extended_style_of(control()) & WS_EX_CLIENTEDGE, WS_EX_CLIENTEDGE);
    EXPECT_EQ(GetDlgCtrlID(control()), -1);
    EXPECT_EQ(placement_of(control()), (Placement{0, 0, 1, 1}));
    EXPECT_EQ(font_of(control()), GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_EQ(GetParent(control()), main.group_box());
    entry->destroyControls(main.window());
    EXPECT_THAT(children_of(main.window()), IsEmpty());
}

TEST_F(StringPage, IsLaidOutBelowTheHelpText) {
    show("text");
    EXPECT_EQ(placement_of(main.control(0)), (Placement{10, 20, 178, 119}));
    EXPECT_EQ(placement_of(control()), (Placement{10, 149, 178, 20}));
    main.resize(801, 400);
    entry->layout(main.window());
    EXPECT_EQ(placement_of(control()), (Placement{10, 320, 360, 20}));
}

TEST_F(StringPage, ShowsAndTakesTheTextAsTyped) {
    show("text");
    EXPECT_EQ(text_of(control()), "text");
    type(control(), " new \xE4 ");
    EXPECT_EQ(entry->value(), "text");
    EXPECT_EQ(left(), " new \xE4 ");
    EXPECT_TRUE(entry->changed());
}

TEST_F(StringPage, LosesTheTextBoxFirst) {
    show("text");
    const std::vector<HWND> order{control(), main.control(0), main.group_box()};
    entry->deselect(main.window());
    EXPECT_EQ(main.destroyed(), order);
}

TEST_F(StringPage, LeavesAnUntouchedTextUnchanged) {
    show("text");
    EXPECT_EQ(left(), "text");
    EXPECT_FALSE(entry->changed());
}

TEST_F(StringPage, OfAMissingValueIsEmptyAndUnchanged) {
    show();
    EXPECT_EQ(text_of(control()), "");
    EXPECT_EQ(left(), "");
    EXPECT_FALSE(entry->changed());
}

TEST_F(StringPage, KeepsAnEditWhileItIsNotShown) {
    show("text");
    type(control(), "edited");
    entry->deselect(main.window());
    entry->select(main.window());
    EXPECT_EQ(text_of(control()), "edited");
    EXPECT_EQ(stored(), "text");
}

TEST_F(StringPage, CutsWhatIsTooLong) {
    show("");
    type(control(), std::string(2000, 'x'));
    EXPECT_EQ(left(), std::string(1023, 'x'));
}

TEST_F(StringPage, WritesTheLongestTextWhole) {
    show("");
    const std::string longest(1023, 'x');
    type(control(), longest);
    entry->takeValue();
    entry->write();
    EXPECT_EQ(stored(), longest);
}

TEST_F(StringPage, TellsTheMainWindowOfEveryEdit) {
    show("text");
    main.page_changes();
    type(control(), "a");
    type(control(), "ab");
    EXPECT_EQ(main.page_changes(), 2);
}

TEST_F(StringPage, TellsNothingOfOtherMessages) {
    show("text");
    main.page_changes();
    const auto command = [&](WORD code, HWND from) {
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, code), reinterpret_cast<LPARAM>(from));
    };
    command(EN_CHANGE, main.control(0));
    command(EN_SETFOCUS, control());
    command(BN_CLICKED, control());
    SendMessageA(main.group_box(), WM_APP, MAKEWPARAM(0, EN_CHANGE), reinterpret_cast<LPARAM>(control()));
    EXPECT_EQ(main.page_changes(), 0);
    command(EN_CHANGE, control());
    EXPECT_EQ(main.page_changes(), 1);
}

TEST_F(StringPage, ShowsDataOfEveryTypeAndLength) {
    for (const DWORD type :
         {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD}) {
        for (const std::size_t length : {0U, 1U, 4U, 8U, 1022U, 1023U, 1024U, 1025U}) {
            SCOPED_TRACE("type " + std::to_string(type) + ", " + std::to_string(length) + " bytes");
            set_bytes("Value", type, std::string(length, 'x'));
            show();
            const std::string shown(length > 1024 ? 0 : std::min<std::size_t>(length, 1023), 'x');
            EXPECT_TRUE(text_of(control()) == shown);
            EXPECT_TRUE(left() == shown);
            EXPECT_FALSE(entry->changed());
        }
    }
}

} // namespace
