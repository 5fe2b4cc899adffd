#include "spec/boolean_entry.h"
#include "spec/delete_key.h"
#include "spec/integer_entry.h"
#include "spec/one_value_test.h"
#include "spec/string_entry.h"

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
    for (const DWORD type : {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD})
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

class IntegerPage : public OneEntryTest<IntegerEntry> {
protected:
    std::string shown(const std::string& value) {
        show(value);
        std::string text = text_of(control());
        EXPECT_EQ(left(), text);
        return text;
    }
    std::string taken(const std::string& typed) {
        show("");
        type(control(), typed);
        return left();
    }
};

TEST_F(IntegerPage, HasANumberBox) {
    show("");
    ASSERT_EQ(main.controls().size(), 2U);
    EXPECT_EQ(class_of(control()), "Edit");
    EXPECT_EQ(style_of(control()), WS_CHILD | WS_VISIBLE | ES_NUMBER | ES_AUTOHSCROLL);
    EXPECT_EQ(extended_style_of(control()) & WS_EX_CLIENTEDGE, WS_EX_CLIENTEDGE);
    EXPECT_EQ(font_of(control()), GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_EQ(GetDlgCtrlID(control()), -1);
    EXPECT_EQ(placement_of(control()), (Placement{10, 149, 178, 20}));
}

TEST_F(IntegerPage, ShowsEveryNotationInPlainDecimal) {
    EXPECT_EQ(shown("4711"), "4711");
    EXPECT_FALSE(entry->changed());
    EXPECT_EQ(shown("0x10"), "16");
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(shown("0XfF"), "255");
    EXPECT_EQ(shown("010"), "8");
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(shown(" 42abc"), "42");
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(shown("-7"), "-7");
    EXPECT_FALSE(entry->changed());
    EXPECT_EQ(shown("+7"), "7");
    EXPECT_EQ(shown("\t\n 5"), "5");
    EXPECT_EQ(shown("0"), "0");
    EXPECT_EQ(shown("089"), "0");
}

TEST_F(IntegerPage, ShowsNothingWhereThereIsNoNumber) {
    EXPECT_EQ(shown("abc"), "");
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(shown("- 1"), "");
    EXPECT_EQ(shown(""), "");
    EXPECT_FALSE(entry->changed());
}

TEST_F(IntegerPage, OfAMissingValueIsEmptyAndUnchanged) {
    show();
    EXPECT_EQ(text_of(control()), "");
    EXPECT_EQ(left(), "");
    EXPECT_FALSE(entry->changed());
}

TEST_F(IntegerPage, TakesTheNumberOfTheText) {
    EXPECT_EQ(taken("0x7f"), "127");
    EXPECT_EQ(taken("0042"), "34");
    EXPECT_EQ(taken("12 34"), "12");
    EXPECT_EQ(taken("-"), "");
    EXPECT_EQ(taken(""), "");
    EXPECT_EQ(taken("port"), "");
}

TEST_F(IntegerPage, HoldsNumbersOf32Bits) {
    EXPECT_EQ(taken("2147483647"), "2147483647");
    EXPECT_EQ(taken("-2147483648"), "-2147483648");
    EXPECT_EQ(taken("99999999999999999999"), "2147483647");
}

TEST_F(IntegerPage, TellsTheMainWindowOfEveryEdit) {
    show("1");
    main.page_changes();
    type(control(), "2");
    EXPECT_EQ(main.page_changes(), 1);
}

class BooleanPage : public OneEntryTest<BooleanEntry> {
protected:
    bool shown(const std::string& value) {
        show(value);
        const bool checked = is_checked(control());
        entry->deselect(main.window());
        return checked;
    }
};

TEST_F(BooleanPage, HasACheckbox) {
    entry = std::make_unique<BooleanEntry>(binding(), "Title", "Help");
    entry->createControls(main.window());
    ASSERT_EQ(main.controls().size(), 2U);
    EXPECT_EQ(class_of(control()), "Button");
    EXPECT_EQ(text_of(control()), "Enabled");
    EXPECT_EQ(style_of(control()), WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX);
    EXPECT_EQ(extended_style_of(control()) & WS_EX_CLIENTEDGE, 0);
    EXPECT_EQ(GetDlgCtrlID(control()), -1);
    EXPECT_EQ(placement_of(control()), (Placement{0, 0, 1, 1}));
    EXPECT_EQ(font_of(control()), GetStockObject(DEFAULT_GUI_FONT));
    entry->layout(main.window());
    EXPECT_EQ(placement_of(control()), (Placement{10, 154, 178, 15}));
}

TEST_F(BooleanPage, IsCheckedForTrueInAnyLetterCase) {
    EXPECT_TRUE(shown("true"));
    EXPECT_FALSE(entry->changed());
    EXPECT_TRUE(shown("TRUE"));
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(entry->value(), "true");
    EXPECT_TRUE(shown("tRuE"));
}

TEST_F(BooleanPage, IsNotCheckedForAnythingElse) {
    for (const char* value : {"1", "yes", "true ", "", "tru"}) {
        EXPECT_FALSE(shown(value)) << value;
        EXPECT_EQ(entry->value(), "false");
        EXPECT_TRUE(entry->changed());
    }
    EXPECT_FALSE(shown("false"));
    EXPECT_FALSE(entry->changed());
}

TEST_F(BooleanPage, OfAMissingValueChangesItByBeingSeen) {
    show();
    EXPECT_FALSE(is_checked(control()));
    EXPECT_FALSE(entry->changed());
    EXPECT_EQ(left(), "false");
    EXPECT_TRUE(entry->changed());
}

TEST_F(BooleanPage, TellsTheMainWindowOfEveryClick) {
    show("true");
    main.page_changes();
    click(control());
    entry->takeValue();
    EXPECT_EQ(entry->value(), "false");
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(main.page_changes(), 1);
    click(control());
    EXPECT_EQ(main.page_changes(), 1);
    EXPECT_EQ(left(), "true");
    EXPECT_FALSE(entry->changed());
}

class DeleteKeyPage : public SpecKeyTest {
protected:
    void show() {
        entry = std::make_unique<DeleteKey>(DeleteRegKey(HKEY_LOCAL_MACHINE, kTestKey + "\\Cache"), "Title",
                                            "Help");
        entry->select(main.window());
    }
    HWND control() const { return main.control(1); }

    StandInMainWindow main{436, 229};
    std::unique_ptr<DeleteKey> entry;
};

TEST_F(DeleteKeyPage, HasACheckbox) {
    make_key(kTestKey + "\\Cache");
    show();
    ASSERT_EQ(main.controls().size(), 2U);
    EXPECT_EQ(class_of(control()), "Button");
    EXPECT_EQ(text_of(control()), "Delete");
    EXPECT_EQ(style_of(control()), WS_CHILD | WS_VISIBLE | BS_AUTOCHECKBOX);
    EXPECT_EQ(GetDlgCtrlID(control()), -1);
    EXPECT_EQ(placement_of(control()), (Placement{10, 154, 178, 15}));
    EXPECT_EQ(font_of(control()), GetStockObject(DEFAULT_GUI_FONT));
    EXPECT_TRUE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
}

TEST_F(DeleteKeyPage, RequestsTheDeletion) {
    make_key(kTestKey + "\\Cache");
    show();
    main.page_changes();
    click(control());
    EXPECT_EQ(main.page_changes(), 1);
    entry->deselect(main.window());
    EXPECT_TRUE(entry->changed());
    entry->select(main.window());
    EXPECT_TRUE(is_checked(control()));
    click(control());
    entry->takeValue();
    EXPECT_FALSE(entry->changed());
}

TEST_F(DeleteKeyPage, OfAMissingKeyIsDisabled) {
    show();
    EXPECT_FALSE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
    SendMessageA(control(), BM_SETCHECK, BST_CHECKED, 0);
    entry->deselect(main.window());
    EXPECT_FALSE(entry->delete_requested());
    EXPECT_FALSE(entry->changed());
}

TEST_F(DeleteKeyPage, OnceDeletedIsDisabled) {
    make_key(kTestKey + "\\Cache");
    show();
    click(control());
    entry->takeValue();
    entry->write();
    EXPECT_FALSE(entry->changed());
    entry->deselect(main.window());
    entry->select(main.window());
    EXPECT_FALSE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
}

} // namespace
