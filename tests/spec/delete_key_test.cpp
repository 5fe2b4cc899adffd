#include "spec/actions.h"
#include "spec/one_value_test.h"

#include <gmock/gmock.h>

namespace {

// The page of a main window of 436 by 229 is 198 by 179.

class DeleteKeyPage : public SpecKeyTest {
protected:
    void show() {
        entry = std::make_unique<DeleteKey>(DeleteRegKey(HKEY_LOCAL_MACHINE, test_key + "\\Cache"), "Title",
                                            "Help");
        entry->select(main.window());
    }
    HWND control() const { return main.control(1); }

    StandInMainWindow main{436, 229};
    std::unique_ptr<DeleteKey> entry;
};

TEST_F(DeleteKeyPage, HasACheckbox) {
    make_key(test_key + "\\Cache");
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
    make_key(test_key + "\\Cache");
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
    make_key(test_key + "\\Cache");
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
