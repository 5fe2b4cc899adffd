#include "spec/one_value_test.h"
#include "spec/value_entries.h"

#include <gmock/gmock.h>

namespace {

// The page of a main window of 436 by 229 is 198 by 179.

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

} // namespace
