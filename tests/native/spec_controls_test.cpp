#include "platform/substitute/control.h"
#include "spec/actions.h"
#include "spec/configuration.h"
#include "spec/option_entry.h"
#include "spec/selectors.h"
#include "spec/server_list_entry.h"
#include "spec/value_entries.h"
#include "support/page.h"
#include "support/registry.h"
#include "support/spec_text.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

CommonRegKey binding() { return {HKEY_LOCAL_MACHINE, test_key, "Value", false}; }

const Configuration nobody(true);

/// A kind of entry and what is thrown when its own controls cannot be created.
struct Kind {
    const char* name;
    OwnedEntry (*make)();
    std::vector<std::string> failures;
};

const Kind kinds[] = {
    {"String",
     [] { return make_entry<StringEntry>(binding(), "t", "h"); },
     {"Unable to create text entry control"}},
    {"Integer",
     [] { return make_entry<IntegerEntry>(binding(), "t", "h"); },
     {"Unable to create integer entry control"}},
    {"Boolean",
     [] { return make_entry<BooleanEntry>(binding(), "t", "h"); },
     {"Unable to create checkbox control"}},
    {"DeleteKey",
     [] { return make_entry<DeleteKey>(DeleteRegKey(HKEY_LOCAL_MACHINE, test_key), "t", "h"); },
     {"Unable to create checkbox delete control"}},
    {"Option",
     [] { return make_entry<OptionEntry>(binding(), "t", "h", std::vector<std::string>{"a"}); },
     {"Unable to create combobox control"}},
    {"SignalEvent",
     [] { return make_entry<SignalEvent>("event", "t", "h"); },
     {"Unable to create scan button"}},
    {"Directory",
     [] { return make_entry<DirectorySelector>(binding(), "t", "h"); },
     {"Unable to create dir box", "Unable to create dir button"}},
    {"File",
     [] { return make_entry<FileSelector>(binding(), "t", "h", "log"); },
     {"Unable to create file box", "Unable to create file button"}},
    {"ServerList",
     [] { return make_entry<ServerListEntry>(binding(), "t", "h", nobody); },
     {"Unable to create text entry box", "Unable to create scan button"}},
};

class ControlFailures : public CleanSystem, public testing::WithParamInterface<Kind> {
protected:
    std::string thrown_when_control_fails(int nth) const {
        const OwnedEntry entry = GetParam().make();
        substitute::fail_call("CreateWindowExA", nth);
        std::string thrown = thrown_text([&] { entry->select(main.window()); });
        entryByGroupBox.clear();
        return thrown;
    }

    StandInMainWindow main{436, 229};
};

INSTANTIATE_TEST_SUITE_P(Kinds, ControlFailures, testing::ValuesIn(kinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(ControlFailures, AreThrownAsTheKindsOwnTexts) {
    EXPECT_EQ(thrown_when_control_fails(1), "Unable to create group box");
    EXPECT_EQ(thrown_when_control_fails(2), "Unable to create help text static");
    int nth = 3;
    for (const std::string& failure : GetParam().failures)
        EXPECT_EQ(thrown_when_control_fails(nth++), failure);
    EXPECT_EQ(thrown_when_control_fails(nth), "nothing thrown");
}

TEST_P(ControlFailures, LeaveTheEntryDeselected) {
    const OwnedEntry entry = GetParam().make();
    substitute::fail_call("CreateWindowExA");
    EXPECT_EQ(thrown_text([&] { entry->select(main.window()); }), "Unable to create group box");
    testing::internal::CaptureStderr();
    entry->deselect(main.window());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Double deselection!\n");
    entry->select(main.window());
    EXPECT_EQ(main.controls().size(), GetParam().failures.size() + 1);
}

TEST_P(ControlFailures, APageTakenDownLeavesNoWindow) {
    const std::size_t before = substitute::open_windows();
    const OwnedEntry entry = GetParam().make();
    entry->select(main.window());
    EXPECT_EQ(substitute::open_windows(), before + 2 + GetParam().failures.size());
    entry->deselect(main.window());
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

/// Version 6 of the controls opens as many rows as it is told; the older ones go by the box's height.
TEST_F(OptionList, OpensAsManyRowsAsFitIntoItsHeight) {
    StandInMainWindow main(436, 229);
    OptionEntry entry(binding(), "t", "h", {"a", "b"});
    entry.select(main.window());
    // 140 pixels less 21 for the closed box and 2 for the list's frame, 13 a row.
    EXPECT_EQ(SendMessageA(main.control(1), CB_GETMINVISIBLE, 0, 0), 9);
    entry.deselect(main.window());
}

} // namespace
