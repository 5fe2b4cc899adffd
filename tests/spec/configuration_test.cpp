#include "spec/configuration.h"

#include "spec/test_key.h"
#include "support/page.h"
#include "support/spec_text.h"
#include "support/thrown.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class Lookup : public SpecKeyTest {
protected:
    Lookup() {
        set_text("Name", "agent-1");
        set_text("Second", "second");
        set_text("Port", "4711");
        configuration =
            parse("\\" + test_key + "\nAgent\n" + //
                  "!G\n$Name\nName\nh\nString\n$Signal\nEvent\nh\nSignalEvent\n" +
                  "!H\n$Name\nSecond\nh\nString\n$Port\nPort\nh\nInteger\n$Text\nName\nh\nString\n");
    }

    std::unique_ptr<Configuration> configuration;
};

TEST_F(Lookup, TakesTheFirstInGroupAndEntryOrder) {
    EXPECT_EQ(configuration->text_by_title("Name"), "agent-1");
    EXPECT_EQ(&configuration->entry_by_title("Name"), configuration->groups[0].entries[0].get());
    EXPECT_EQ(configuration->integer_by_title("Port"), 4711);
}

TEST_F(Lookup, IsExact) {
    const auto lookup = [&](const std::string& title) {
        return thrown_text([&] { configuration->value_by_title(title); });
    };
    EXPECT_EQ(lookup("name"), "Did not find anything with the title \"name\"");
    EXPECT_EQ(lookup("Name "), "Did not find anything with the title \"Name \"");
    EXPECT_EQ(lookup(""), "Did not find anything with the title \"\"");
}

TEST_F(Lookup, NeedsARegistryValue) {
    EXPECT_EQ(thrown_text([&] { configuration->text_by_title("Signal"); }),
              "Found title, but it is not a CommonRegKey");
}

TEST_F(Lookup, OfANumberNeedsAWholeDecimalOne) {
    EXPECT_EQ(thrown_text([&] { configuration->integer_by_title("Text"); }),
              "Error reading value: Error parsing: \"agent-1\"");
    configuration->value_by_title("Port").set_value("12 ");
    EXPECT_EQ(thrown_text([&] { configuration->integer_by_title("Port"); }),
              "Error reading value: Error parsing: \"12 \"");
    configuration->value_by_title("Port").set_value("");
    EXPECT_EQ(configuration->integer_by_title("Port"), 0);
    configuration->value_by_title("Port").set_value("-1");
    EXPECT_EQ(configuration->integer_by_title("Port"), -1);
}

class Changes : public Lookup {
protected:
    ~Changes() override {
        if (configuration->shown_entry != nullptr)
            configuration->shown_entry->destroyControls(main.window());
    }

    StandInMainWindow main{436, 229};
};

TEST_F(Changes, AreNoneAtFirst) { EXPECT_FALSE(configuration->has_changes()); }

TEST_F(Changes, OfTheShownPageAreTakenFirst) {
    configuration->shown_entry = &configuration->entry_by_title("Name");
    configuration->shown_entry->select(main.window());
    EXPECT_FALSE(configuration->has_changes());
    type(main.control(1), "typed");
    EXPECT_TRUE(configuration->has_changes());
    EXPECT_EQ(configuration->text_by_title("Name"), "typed");
    type(main.control(1), "agent-1");
    EXPECT_FALSE(configuration->has_changes());
}

TEST_F(Changes, OfPagesThatWereLeftCount) {
    configuration->changed_entries.insert(&configuration->entry_by_title("Port"));
    EXPECT_TRUE(configuration->has_changes());
    configuration->shown_entry = &configuration->entry_by_title("Name");
    configuration->shown_entry->select(main.window());
    EXPECT_TRUE(configuration->has_changes());
}

TEST_F(Changes, OfAnEntryThatNobodyShowsAreNotAskedFor) {
    configuration->value_by_title("Name").set_value("changed behind the page");
    EXPECT_FALSE(configuration->has_changes());
}

TEST_F(Changes, OfTwoEntriesWithOneValueAreKeptApart) {
    BaseEntry& first = configuration->entry_by_title("Name");
    BaseEntry& other = configuration->entry_by_title("Text");
    configuration->value_by_title("Name").set_value("new");
    EXPECT_TRUE(first.changed());
    EXPECT_FALSE(other.changed());
    first.write();
    EXPECT_FALSE(first.changed());
    EXPECT_EQ(configuration->text_by_title("Text"), "agent-1");
    other.read();
    EXPECT_EQ(configuration->text_by_title("Text"), "new");
}

} // namespace
