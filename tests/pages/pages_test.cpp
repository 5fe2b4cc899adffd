// What the pages of all kinds have in common, by the table of kinds.
#include "pages/configuration.h"
#include "pages/test_key.h"
#include "specfile/value_text.h"
#include "support/kinds.h"
#include "support/page.h"
#include "support/spec_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

namespace {

using testing::IsEmpty;

/// An entry "Title" of the value "Value", in a main window whose pages are 198 by 179.
class KindTest : public SpecKeyTest, public testing::WithParamInterface<PageKind> {
protected:
    void make(const std::string& value) {
        set_text("Value", value);
        make();
    }
    void make() {
        make_key(test_key + "\\Value"); // something to remove
        configuration = parse(text);
    }
    BaseEntry& entry() const { return configuration->entry_by_title("Title"); }
    const std::vector<TestedControl>& expected() const { return GetParam().controls; }
    /// The kind's own controls, in the order of the table.
    std::vector<HWND> own_controls() const {
        auto controls = main.controls();
        controls.erase(controls.begin());
        return controls;
    }
    void command(WORD code, HWND from) const {
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, code), reinterpret_cast<LPARAM>(from));
    }

    StandInMainWindow main{436, 229};
    const std::string text = "\\" + test_key + "\nAgent\n!G\n" + GetParam().subspec("Title", "Value");
    std::unique_ptr<Configuration> configuration;
};

std::string name_of(const testing::TestParamInfo<PageKind>& kind) { return kind.param.type; }

class EveryPage : public KindTest {};
INSTANTIATE_TEST_SUITE_P(Kinds, EveryPage, testing::ValuesIn(page_kinds), name_of);

/// A list changes its styles, and sets its height by its font.
LONG_PTR compared_styles(const TestedControl& control) {
    return control.window_class == std::string("ComboBox")
               ? LONG_PTR{WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST | CBS_SORT | WS_TABSTOP}
               : ~LONG_PTR{0};
}

/// Includes the edges of a dialog and of a control that cannot be edited.
constexpr LONG_PTR every_edge = WS_EX_CLIENTEDGE | 0x20001;

void expect_created(HWND control, const TestedControl& expected) {
    EXPECT_EQ(class_of(control), expected.window_class);
    EXPECT_EQ(text_of(control), expected.text);
    EXPECT_EQ(style_of(control) & compared_styles(expected), WS_CHILD | WS_VISIBLE | expected.style);
    EXPECT_EQ(extended_style_of(control) & every_edge, expected.has_sunken_edge ? WS_EX_CLIENTEDGE : 0);
    EXPECT_EQ(GetDlgCtrlID(control), -1);
    EXPECT_EQ(font_of(control), GetStockObject(DEFAULT_GUI_FONT));
    if (expected.window_class != std::string("ComboBox")) {
        EXPECT_EQ(placement_of(control), (Placement{0, 0, 1, 1}));
    }
}

TEST_P(EveryPage, HasItsControlsBelowTheHelpText) {
    make();
    entry().createControls(main.window());
    EXPECT_EQ(text_of(main.group_box()), "Title");
    EXPECT_EQ(text_of(main.control(0)), "Help");
    ASSERT_EQ(own_controls().size(), expected().size());
    for (std::size_t i = 0; i < expected().size(); ++i)
        expect_created(own_controls()[i], expected()[i]);
    entry().destroyControls(main.window());
    EXPECT_THAT(children_of(main.window()), IsEmpty());
    EXPECT_THAT(entryByGroupBox, IsEmpty());
}

std::map<HWND, WNDPROC> watched_procedures;
std::map<HWND, Placement> asked_for;

LRESULT CALLBACK watch(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_WINDOWPOSCHANGING) {
        const auto& position = *reinterpret_cast<WINDOWPOS*>(lparam);
        asked_for.try_emplace(window, Placement{position.x, position.y, position.cx, position.cy});
    }
    return CallWindowProcA(watched_procedures.at(window), window, message, wparam, lparam);
}

/// The requested place; a list then sets its height itself.
std::map<HWND, Placement> asked_for_by_layout(BaseEntry& entry, HWND parent,
                                              const std::vector<HWND>& controls) {
    for (const HWND control : controls) {
        watched_procedures[control] = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&watch)));
    }
    asked_for.clear();
    entry.layout(parent);
    return asked_for;
}

TEST_P(EveryPage, IsLaidOut) {
    make();
    entry().createControls(main.window());
    auto asked = asked_for_by_layout(entry(), main.window(), own_controls());
    EXPECT_EQ(placement_of(main.control(0)), (Placement{10, 20, 178, 119}));
    for (std::size_t i = 0; i < expected().size(); ++i) {
        SCOPED_TRACE(expected()[i].window_class);
        const Placement& placement = expected()[i].placement;
        EXPECT_EQ(asked[own_controls()[i]], placement);
        EXPECT_EQ(placement_of(own_controls()[i]).x, placement.x);
        EXPECT_EQ(placement_of(own_controls()[i]).y, placement.y);
        EXPECT_EQ(placement_of(own_controls()[i]).width, placement.width);
    }
}

TEST_P(EveryPage, LosesTheLastControlFirst) {
    make();
    entry().select(main.window());
    auto order = main.controls();
    std::reverse(order.begin(), order.end());
    order.push_back(main.group_box());
    entry().deselect(main.window());
    EXPECT_EQ(main.destroyed(), order);
}

TEST_P(EveryPage, TellsTheMainWindowOfEditsAlone) {
    make();
    entry().select(main.window());
    main.page_changes();
    for (std::size_t i = 0; i < expected().size(); ++i) {
        const HWND control = own_controls()[i];
        const WORD edited = expected()[i].edited.value_or(EN_CHANGE);
        command(edited, control);
        EXPECT_EQ(main.page_changes(), expected()[i].edited ? 1 : 0);
        command(EN_SETFOCUS, control);
        if (edited != BN_CLICKED && GetParam().button().empty())
            command(BN_CLICKED, control);
        command(edited, main.control(0));
        SendMessageA(main.group_box(), WM_APP, MAKEWPARAM(0, edited), reinterpret_cast<LPARAM>(control));
        EXPECT_EQ(main.page_changes(), 0);
    }
}

/// Code that sets values without a page uses value_text.h.
TEST_P(EveryPage, StoresWhatIsStoredWithoutAPage) {
    SpecReader reader(text);
    reader.next();
    const auto declaration = std::get<Declaration>(*reader.next());
    for (const std::string value : {"", "value", "TRUE", "true", "yes", "0x10", "010", " 42abc", "-", "high",
                                    "2147483648", " a:1,b "}) {
        if (!GetParam().has_value())
            break;
        make(value);
        entry().select(main.window());
        entry().deselect(main.window());
        EXPECT_EQ(configuration->text_by_title("Title"), stored_by_page(declaration, value)) << value;
    }
}

/// The kinds whose page has a text box.
class TextPage : public KindTest {
protected:
    void show(const std::string& value) {
        set_text("Value", value);
        show();
    }
    void show() {
        make();
        entry().select(main.window());
    }
    std::string left() {
        entry().deselect(main.window());
        return value();
    }
    std::string value() const { return configuration->text_by_title("Title"); }
    HWND text_box() const { return main.control(1); }
};
INSTANTIATE_TEST_SUITE_P(Kinds, TextPage, testing::ValuesIn(kinds_seen_as(View::text)), name_of);

TEST_P(TextPage, GrowsWithTheWindow) {
    show("text");
    const Placement before = placement_of(text_box());
    main.resize(801, 400);
    entry().layout(main.window());
    EXPECT_EQ(placement_of(text_box()), (Placement{10, 320, before.width + 182, 20}));
}

TEST_P(TextPage, ShowsAndTakesTheTextAsTyped) {
    show("text");
    EXPECT_EQ(text_of(text_box()), "text");
    type(text_box(), " C:\\new, \xE4 ");
    EXPECT_EQ(value(), "text");
    EXPECT_EQ(left(), " C:\\new, \xE4 ");
    EXPECT_TRUE(entry().changed());
    entry().select(main.window());
    EXPECT_EQ(text_of(text_box()), " C:\\new, \xE4 ");
    type(text_box(), "text");
    entry().takeValue();
    EXPECT_FALSE(entry().changed());
}

TEST_P(TextPage, LeavesAnUntouchedTextUnchanged) {
    show("text");
    EXPECT_EQ(left(), "text");
    EXPECT_FALSE(entry().changed());
}

TEST_P(TextPage, OfAMissingValueIsEmptyAndUnchanged) {
    show();
    EXPECT_EQ(text_of(text_box()), "");
    EXPECT_EQ(left(), "");
    EXPECT_FALSE(entry().changed());
}

TEST_P(TextPage, KeepsAnEditWhileItIsNotShown) {
    show("text");
    type(text_box(), "edited");
    entry().deselect(main.window());
    entry().select(main.window());
    EXPECT_EQ(text_of(text_box()), "edited");
    EXPECT_EQ(text_value(test_key, "Value"), "text");
}

TEST_P(TextPage, CutsWhatIsTooLong) {
    show("");
    type(text_box(), std::string(2000, 'x'));
    EXPECT_EQ(left(), std::string(1023, 'x'));
}

TEST_P(TextPage, WritesTheLongestTextWhole) {
    show("");
    const std::string longest(1023, 'x');
    type(text_box(), longest);
    entry().takeValue();
    entry().write();
    EXPECT_EQ(text_value(test_key, "Value"), longest);
}

TEST_P(TextPage, TellsTheMainWindowOfEveryEdit) {
    show("text");
    main.page_changes();
    type(text_box(), "a");
    type(text_box(), "ab");
    EXPECT_EQ(main.page_changes(), 2);
}

TEST_P(TextPage, ShowsDataOfEveryTypeAndLength) {
    for (const DWORD type :
         {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_QWORD}) {
        for (const std::size_t length : {0U, 1U, 4U, 8U, 1022U, 1023U, 1024U, 1025U}) {
            SCOPED_TRACE("type " + std::to_string(type) + ", " + std::to_string(length) + " bytes");
            set_bytes("Value", type, std::string(length, 'x'));
            show();
            const std::string shown(length > 1024 ? 0 : std::min<std::size_t>(length, 1023), 'x');
            EXPECT_TRUE(text_of(text_box()) == shown);
            EXPECT_TRUE(left() == shown);
            EXPECT_FALSE(entry().changed());
        }
    }
}

} // namespace
