#include "pages/kinds/option_entry.h"

#include "pages/one_value_test.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class OptionPage : public OneValueTest {
protected:
    void show(const std::string& value, std::vector<std::string> options) {
        set_text("Value", value);
        entry = std::make_unique<OptionEntry>(binding(), title_and_help, std::move(options));
        entry->select(main.window());
    }
    HWND control() const { return main.control(1); }
    LRESULT selection() const { return SendMessageA(control(), CB_GETCURSEL, 0, 0); }
    /// As the user does it in the list.
    void choose(int index) {
        SendMessageA(control(), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(control()));
    }
    std::string left() {
        entry->deselect(main.window());
        return entry->value();
    }
    std::vector<std::string> offered() const {
        std::vector<std::string> options;
        const LRESULT count = SendMessageA(control(), CB_GETCOUNT, 0, 0);
        for (WPARAM i = 0; i < static_cast<WPARAM>(count); ++i) {
            std::string text(static_cast<std::size_t>(SendMessageA(control(), CB_GETLBTEXTLEN, i, 0)) + 1,
                             '\0');
            SendMessageA(control(), CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
            text.pop_back();
            options.push_back(text);
        }
        return options;
    }

    std::unique_ptr<OptionEntry> entry;
};

TEST_F(OptionPage, OffersTheOptionsInTheirOrder) {
    show("", {"zebra", "ant", "", " Bee"});
    EXPECT_THAT(offered(), ElementsAre("zebra", "ant", "", " Bee"));
}

TEST_F(OptionPage, ShowsTheValueAsSelection) {
    show("ant", {"zebra", "ant"});
    EXPECT_EQ(selection(), 1);
    EXPECT_EQ(left(), "ant");
    EXPECT_FALSE(entry->changed());
}

TEST_F(OptionPage, StoresTheChosenOption) {
    show("ant", {"zebra", "ant"});
    choose(0);
    EXPECT_EQ(entry->value(), "ant");
    EXPECT_EQ(left(), "zebra");
    EXPECT_TRUE(entry->changed());
}

TEST_F(OptionPage, LeavesAValueThatIsNoOptionAlone) {
    show("Ant", {"zebra", "ant"});
    EXPECT_EQ(selection(), CB_ERR);
    EXPECT_EQ(left(), "Ant");
    EXPECT_FALSE(entry->changed());
    entry->select(main.window());
    choose(1);
    EXPECT_EQ(left(), "ant");
}

TEST_F(OptionPage, WithoutOptionsNeverChangesTheValue) {
    show("value", {});
    EXPECT_EQ(SendMessageA(control(), CB_GETCOUNT, 0, 0), 0);
    EXPECT_EQ(selection(), CB_ERR);
    EXPECT_EQ(left(), "value");
}

TEST_F(OptionPage, SelectsTheLastOfEqualOptions) {
    show("same", {"same", "other", "same"});
    EXPECT_THAT(offered(), ElementsAre("same", "other", "same"));
    EXPECT_EQ(selection(), 2);
    choose(0);
    EXPECT_EQ(left(), "same");
    EXPECT_FALSE(entry->changed());
}

TEST_F(OptionPage, TellsTheMainWindowOfAChoice) {
    show("a", {"a", "b"});
    main.page_changes();
    choose(1);
    EXPECT_EQ(main.page_changes(), 1);
    const auto command = [&](WORD code, HWND from) {
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, code), reinterpret_cast<LPARAM>(from));
    };
    command(CBN_DROPDOWN, control());
    command(CBN_SELCHANGE, main.control(0));
    EXPECT_EQ(main.page_changes(), 0);
}

TEST_F(OptionPage, AChoiceThatTheClosingListTakesBackLeavesTheValueThatIsNoOption) {
    show("+7", {"low", "high"});
    SendMessageA(control(), CB_SETCURSEL, 1, 0);
    entry->takeValue();
    EXPECT_EQ(entry->value(), "high");
    SendMessageA(control(), CB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(left(), "+7");
    EXPECT_FALSE(entry->changed());
}

TEST_F(OptionPage, HasTheMainWindowLookAgainWhenTheListCloses) {
    show("a", {"a", "b"});
    main.page_changes();
    const auto close_up = [&](HWND from) {
        SendMessageA(main.group_box(), WM_COMMAND, MAKEWPARAM(0xFFFF, CBN_CLOSEUP),
                     reinterpret_cast<LPARAM>(from));
    };
    close_up(control());
    EXPECT_EQ(main.page_changes(), 1);
    close_up(main.control(0));
    EXPECT_EQ(main.page_changes(), 0);
}

TEST_F(OptionPage, MayBeShownAgain) {
    show("b", {"a", "b"});
    choose(0);
    entry->deselect(main.window());
    entry->select(main.window());
    EXPECT_THAT(offered(), ElementsAre("a", "b"));
    EXPECT_EQ(selection(), 0);
}

TEST_F(OptionPage, DoesNotKnowWhatOthersAdded) {
    show("a", {"a"});
    const LRESULT foreign =
        SendMessageA(control(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("added by someone else"));
    SendMessageA(control(), CB_SETCURSEL, static_cast<WPARAM>(foreign), 0);
    EXPECT_EQ(thrown_text([&] { entry->takeValue(); }), "Lookup of selval failed");
}

WNDPROC watched_procedure = nullptr;

LRESULT CALLBACK refuse_strings(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return message == CB_ADDSTRING ? CB_ERR
                                   : CallWindowProcA(watched_procedure, window, message, wparam, lparam);
}

TEST_F(OptionPage, NeedsEveryOptionInTheList) {
    StandInMainWindow::when_created([](HWND control) {
        if (class_of(control) == "ComboBox") {
            watched_procedure = reinterpret_cast<WNDPROC>(
                SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&refuse_strings)));
        }
    });
    EXPECT_EQ(thrown_text([&] { show("a", {"a"}); }), "Unable to add string to combobox");
}

TEST_F(OptionPage, StoresAnOptionThatIsTooLongToShow) {
    const std::string longest(1023, 'x');
    show("", {longest, longest + "yz"});
    EXPECT_THAT(offered(), ElementsAre(longest, longest));
    choose(1);
    EXPECT_EQ(left(), longest + "yz");
}

TEST_F(OptionPage, HoldsTenThousandOptions) {
    std::vector<std::string> options(10000);
    for (std::size_t i = 0; i < options.size(); ++i)
        options[i] = "option " + std::to_string(i);
    show("option 9876", std::move(options));
    EXPECT_EQ(selection(), 9876);
    choose(1234);
    EXPECT_EQ(left(), "option 1234");
}

} // namespace
