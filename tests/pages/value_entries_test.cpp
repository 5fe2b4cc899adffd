#include "pages/kinds/value_entries.h"

#include "pages/one_value_test.h"

#include <gmock/gmock.h>

namespace {

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

} // namespace
