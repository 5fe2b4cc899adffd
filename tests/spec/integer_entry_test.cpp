#include "spec/one_value_test.h"
#include "spec/value_entries.h"

#include <gmock/gmock.h>

namespace {

// The page of a main window of 436 by 229 is 198 by 179.

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

} // namespace
