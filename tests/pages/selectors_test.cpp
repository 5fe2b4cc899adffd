#include "pages/kinds/selectors.h"
#include "pages/one_value_test.h"
#include "support/dialogs.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

class Selector : public OneValueTest {
protected:
    /// The system's dialog may change the working directory of the program.
    ~Selector() override { std::filesystem::current_path(directory_); }

    HWND text_box() const { return main.control(1); }
    HWND button() const { return main.control(2); }

private:
    std::filesystem::path directory_ = std::filesystem::current_path();
};

class Directory : public Selector {
protected:
    void show(const std::string& value) {
        set_text("Value", value);
        entry = std::make_unique<DirectorySelector>(binding(), title_and_help);
        entry->select(main.window());
        main.page_changes();
    }

    std::unique_ptr<DirectorySelector> entry;
};

TEST_F(Directory, IsReplacedByTheOneChosen) {
    show("old");
    const std::string folder = existing_folder();
    type(text_box(), folder);
    main.page_changes();
    accept_folder(folder);
    click(button());
    EXPECT_EQ(entry->value(), folder);
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(text_of(text_box()), folder);
    EXPECT_EQ(main.page_changes(), 1);
}

TEST_F(Directory, StaysWhenTheUserCancels) {
    show("old");
    type(text_box(), "typed");
    main.page_changes();
    cancel_folder_browser();
    click(button());
    EXPECT_EQ(entry->value(), "old");
    EXPECT_EQ(text_of(text_box()), "typed");
    EXPECT_EQ(main.page_changes(), 0);
}

TEST_F(Directory, OfTwoThousandCharactersIsSurvived) {
    show("old");
    type(text_box(), std::string(2000, 'x'));
    cancel_folder_browser();
    click(button());
    EXPECT_EQ(text_of(text_box()), std::string(2000, 'x'));
    entry->takeValue();
    EXPECT_EQ(entry->value(), std::string(1023, 'x'));
}

TEST_F(Directory, BrowsesOnEveryCommandOfCodeZero) {
    show("old");
    type(text_box(), existing_folder());
    accept_folder(existing_folder());
    // The source is not asked for.
    SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(1, 0), 0);
    EXPECT_EQ(entry->value(), existing_folder());
}

class File : public Selector {
protected:
    void show(const std::string& value, const std::string& extension = "log") {
        set_text("Value", value);
        entry = std::make_unique<FileSelector>(binding(), title_and_help, extension);
        entry->select(main.window());
        main.page_changes();
    }

    std::unique_ptr<FileSelector> entry;
};

TEST_F(File, IsReplacedByTheOneChosen) {
    show("old", "");
    type(text_box(), existing_file());
    main.page_changes();
    accept_file(existing_file());
    click(button());
    EXPECT_EQ(entry->value(), existing_file());
    EXPECT_TRUE(entry->changed());
    EXPECT_EQ(text_of(text_box()), existing_file());
    EXPECT_EQ(main.page_changes(), 1);
}

TEST_F(File, StaysWhenTheUserCancels) {
    show("old");
    type(text_box(), "C:\\typed.log");
    main.page_changes();
    cancel_file_dialog();
    click(button());
    EXPECT_EQ(entry->value(), "old");
    EXPECT_EQ(text_of(text_box()), "C:\\typed.log");
    EXPECT_EQ(main.page_changes(), 0);
}

} // namespace
