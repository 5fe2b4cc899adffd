#include "spec/selectors.h"

#include "spec/base_entry.h"
#include "spec/configuration.h"
#include "spec/one_value_test.h"
#include "spec/server_list_entry.h"

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

/// One kind of entry with a text box and a button, and where they stand on the page of 198 by 179 of a main
/// window of 436 by 229.
struct Kind {
    const char* name;
    OwnedEntry (*make)(CommonRegKey binding);
    const char* button;
    Placement text_box_placement;
    Placement button_placement;
};

const Configuration nobody(true);

const Kind kinds[] = {
    {"Directory",
     [](CommonRegKey binding) { return make_entry<DirectorySelector>(std::move(binding), "Title", "Help"); },
     "...",
     {10, 149, 138, 20},
     {158, 149, 30, 20}},
    {"File",
     [](CommonRegKey binding) {
         return make_entry<FileSelector>(std::move(binding), "Title", "Help", "log");
     },
     "...",
     {10, 149, 138, 20},
     {158, 149, 30, 20}},
    {"ServerList",
     [](CommonRegKey binding) {
         return make_entry<ServerListEntry>(std::move(binding), "Title", "Help", nobody);
     },
     "Scan",
     {10, 149, 123, 20},
     {138, 147, 50, 22}},
};

class TextAndButtonPage : public OneValueTest, public testing::WithParamInterface<Kind> {
protected:
    void make(const std::string& value) {
        set_text("Value", value);
        entry = GetParam().make(binding());
    }
    void show(const std::string& value) {
        make(value);
        entry->select(main.window());
    }
    const std::string& value() const { return dynamic_cast<CommonRegKey&>(*entry).value(); }
    HWND text_box() const { return main.control(1); }
    HWND button() const { return main.control(2); }
    void command(WORD code, HWND from) const {
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, code), reinterpret_cast<LPARAM>(from));
    }

    OwnedEntry entry;
};

INSTANTIATE_TEST_SUITE_P(Kinds, TextAndButtonPage, testing::ValuesIn(kinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(TextAndButtonPage, HasATextBoxAndAButtonBelowTheHelpText) {
    make("value");
    entry->createControls(main.window());
    ASSERT_EQ(main.controls().size(), 3U);
    EXPECT_EQ(text_of(main.control(0)), "Help");
    EXPECT_EQ(class_of(text_box()), "Edit");
    EXPECT_EQ(text_of(text_box()), "");
    EXPECT_EQ(style_of(text_box()), WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL);
    EXPECT_EQ(extended_style_of(text_box()) & WS_EX_CLIENTEDGE, WS_EX_CLIENTEDGE);
    EXPECT_EQ(class_of(button()), "Button");
    EXPECT_EQ(text_of(button()), GetParam().button);
    EXPECT_EQ(style_of(button()), WS_CHILD | WS_VISIBLE);
    EXPECT_EQ(extended_style_of(button()) & WS_EX_CLIENTEDGE, 0);
    for (const HWND control : {text_box(), button()}) {
        EXPECT_EQ(GetDlgCtrlID(control), -1);
        EXPECT_EQ(placement_of(control), (Placement{0, 0, 1, 1}));
        EXPECT_EQ(font_of(control), GetStockObject(DEFAULT_GUI_FONT));
        EXPECT_EQ(GetParent(control), main.group_box());
    }
    entry->destroyControls(main.window());
    EXPECT_THAT(children_of(main.window()), IsEmpty());
    EXPECT_THAT(entryByGroupBox, IsEmpty());
}

TEST_P(TextAndButtonPage, LosesTheButtonFirst) {
    show("value");
    const std::vector<HWND> order{button(), text_box(), main.control(0), main.group_box()};
    entry->deselect(main.window());
    EXPECT_EQ(main.destroyed(), order);
}

TEST_P(TextAndButtonPage, IsLaidOut) {
    show("value");
    EXPECT_EQ(placement_of(main.control(0)), (Placement{10, 20, 178, 119}));
    EXPECT_EQ(placement_of(text_box()), GetParam().text_box_placement);
    EXPECT_EQ(placement_of(button()), GetParam().button_placement);
}

TEST_P(TextAndButtonPage, ShowsAndTakesTheText) {
    show("value");
    EXPECT_EQ(text_of(text_box()), "value");
    type(text_box(), " C:\\new, \xE4 ");
    EXPECT_EQ(value(), "value");
    entry->deselect(main.window());
    EXPECT_EQ(value(), " C:\\new, \xE4 ");
    EXPECT_TRUE(entry->changed());
    entry->select(main.window());
    EXPECT_EQ(text_of(text_box()), " C:\\new, \xE4 ");
    type(text_box(), "value");
    entry->takeValue();
    EXPECT_FALSE(entry->changed());
}

TEST_P(TextAndButtonPage, CutsWhatIsTooLong) {
    show("value");
    type(text_box(), std::string(2000, 'x'));
    entry->takeValue();
    EXPECT_EQ(value(), std::string(1023, 'x'));
}

TEST_P(TextAndButtonPage, TellsTheMainWindowOfEveryEdit) {
    show("value");
    main.page_changes();
    type(text_box(), "a");
    type(text_box(), "ab");
    EXPECT_EQ(main.page_changes(), 2);
    command(EN_CHANGE, button());
    command(EN_SETFOCUS, text_box());
    EXPECT_EQ(main.page_changes(), 0);
}

} // namespace
