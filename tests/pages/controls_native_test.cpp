#include "pages/configuration.h"
#include "pages/kinds/option_entry.h"
#include "substitute/control.h"
#include "support/kinds.h"
#include "support/page.h"
#include "support/registry.h"
#include "support/spec_text.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

class ControlFailures : public CleanSystem, public testing::WithParamInterface<PageKind> {
protected:
    ControlFailures() {
        make_key(test_key);
        configuration = parse("\\" + test_key + "\nAgent\n!G\n" + GetParam().subspec("Title", "Value"));
    }
    ~ControlFailures() override { entryByGroupBox.clear(); }

    BaseEntry& entry() const { return configuration->entry_by_title("Title"); }
    std::string thrown_when_control_fails(int nth) {
        configuration = parse(configuration->spec_text);
        substitute::fail_call("CreateWindowExA", nth);
        std::string thrown = thrown_text([&] { entry().select(main.window()); });
        entryByGroupBox.clear();
        return thrown;
    }

    StandInMainWindow main{436, 229};
    std::unique_ptr<Configuration> configuration;
};

INSTANTIATE_TEST_SUITE_P(Kinds, ControlFailures, testing::ValuesIn(page_kinds),
                         [](const auto& kind) { return std::string(kind.param.type); });

TEST_P(ControlFailures, AreThrownAsTheKindsOwnTexts) {
    EXPECT_EQ(thrown_when_control_fails(1), "Unable to create group box");
    EXPECT_EQ(thrown_when_control_fails(2), "Unable to create help text static");
    int nth = 3;
    for (const TestedControl& control : GetParam().controls)
        EXPECT_EQ(thrown_when_control_fails(nth++), control.failure);
    EXPECT_EQ(thrown_when_control_fails(nth), "nothing thrown");
}

TEST_P(ControlFailures, LeaveTheEntryDeselected) {
    substitute::fail_call("CreateWindowExA");
    EXPECT_EQ(thrown_text([&] { entry().select(main.window()); }), "Unable to create group box");
    testing::internal::CaptureStderr();
    entry().deselect(main.window());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Double deselection!\n");
    entry().select(main.window());
    EXPECT_EQ(main.controls().size(), GetParam().controls.size() + 1);
}

TEST_P(ControlFailures, APageTakenDownLeavesNoWindow) {
    const std::size_t before = substitute::open_windows();
    entry().select(main.window());
    EXPECT_EQ(substitute::open_windows(), before + 2 + GetParam().controls.size());
    entry().deselect(main.window());
    EXPECT_EQ(substitute::open_windows(), before);
}

class PageCost : public CleanSystem {
protected:
    /// The calls that it takes to show the last of so many entries, ask for changes and leave it.
    std::vector<std::string> calls_with(int entries) {
        set_text(test_key, "V", "value");
        std::string text = "\\" + test_key + "\nAgent\n!G\n";
        for (int i = 0; i < entries; ++i)
            text += "$Title\nV\nhelp\nString\n";
        const auto configuration = parse(text);
        BaseEntry& last = *configuration->groups.at(0).entries.back();
        const auto before = static_cast<std::ptrdiff_t>(substitute::calls().size());
        last.select(main.window());
        configuration->shown_entry = &last;
        EXPECT_FALSE(configuration->has_changes());
        last.deselect(main.window());
        std::vector<std::string> made = substitute::calls();
        made.erase(made.begin(), made.begin() + before);
        return made;
    }

    PageCost() { make_key(test_key); }
    StandInMainWindow main{436, 229};
};

TEST_F(PageCost, DoesNotDependOnTheNumberOfEntries) {
    const auto few = calls_with(1);
    EXPECT_FALSE(few.empty());
    EXPECT_EQ(calls_with(5000), few);
}

class OptionList : public CleanSystem {};

/// Version 6 of the controls opens the number of rows that it is given; older versions use the box's height.
TEST_F(OptionList, OpensAsManyRowsAsFitIntoItsHeight) {
    StandInMainWindow main(436, 229);
    OptionEntry entry({test_key, "Value", false}, title_and_help, {"a", "b"});
    entry.select(main.window());
    // 140 pixels less 21 for the closed box and 2 for the list's frame, 13 a row.
    EXPECT_EQ(SendMessageA(main.control(1), CB_GETMINVISIBLE, 0, 0), 9);
    entry.deselect(main.window());
}

} // namespace
