#include "pages/configuration.h"

#include "pages/test_key.h"
#include "support/page.h"
#include "support/scratch_folder.h"
#include "support/spec_text.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
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

constexpr std::size_t hundred_megabytes = 100'000'000;

class ReadFromAFile : public testing::Test {
protected:
    ~ReadFromAFile() override { std::remove(path.c_str()); }

    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

    static std::string failure(const std::string& file, bool connection_test_only) {
        return thrown_text([&] { const Configuration made("value name", file, connection_test_only); });
    }

    const ScratchFolder scratch;
    const std::string path = scratch.path_of("file.spec");
};

/// `copy a.spec+b.spec c.spec` leaves such a byte behind the last line.
TEST_F(ReadFromAFile, ThatCopyHasJoinedParses) {
    write("X\r\nAgent\r\nService\r\n!G\r\n\r\n\x1A");
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.serviceName, "Service");
    EXPECT_EQ(describe(configuration), "!G\n");
}

TEST_F(ReadFromAFile, MayBeHeldOpenByAnotherProgram) {
    write("X\nAgent\n!G\n");
    std::fstream other(path, std::ios::in | std::ios::out | std::ios::binary);
    ASSERT_TRUE(other.is_open());
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.name, "Agent");
    EXPECT_EQ(describe(configuration), "!G\n");
}

TEST_F(ReadFromAFile, IsClosedAfterTheParse) {
    write("X\nAgent\n");
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(std::remove(path.c_str()), 0);
    EXPECT_EQ(configuration.name, "Agent");
}

TEST_F(ReadFromAFile, ThatCannotBeOpenedGivesAnEmptyConfiguration) {
    for (const char* file : {"no such file", "."}) {
        const Configuration configuration("value name", file, false);
        EXPECT_EQ(configuration.name, "");
        EXPECT_EQ(configuration.registryPath, "");
        EXPECT_THAT(configuration.groups, testing::IsEmpty());
    }
}

TEST_F(ReadFromAFile, ThatCannotBeOpenedIsAnErrorForTheConnectionTestAlone) {
    EXPECT_EQ(failure("no such file", true), "Unable to open file: no such file");
    EXPECT_EQ(failure(".", true), "Unable to open file: .");
    EXPECT_EQ(failure("no such file", false), "nothing thrown");
}

TEST_F(ReadFromAFile, OfTheOldSyntaxIsCalledLikeItsRegistryValue) {
    write("X\r\n!G\r\n");
    EXPECT_EQ(Configuration("value name", path, false).name, "value name");
}

TEST_F(ReadFromAFile, ThatDoesNotParseThrows) {
    write("X\nAgent\nService\nrest\n");
    EXPECT_EQ(failure(path, false), "Parse error: line \"rest\" not group start");
}

TEST_F(ReadFromAFile, OfOneEndlessLineIsARegistryPath) {
    write(std::string(hundred_megabytes, 'x'));
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.registryPath.size(), hundred_megabytes);
    EXPECT_EQ(configuration.name, "");
}

TEST_F(ReadFromAFile, OfAHundredMegabytesIsParsed) {
    const std::string subspec = "$A title\nValue\n" + std::string(79, 'h') + "\nString\n";
    std::string bytes = "X\nAgent\n!G\n";
    while (bytes.size() < hundred_megabytes)
        bytes += subspec;
    write(bytes + "\n!H\n$L\nL\nh\nServerList\n");
    EXPECT_EQ(describe(Configuration("value name", path, true)), "!G\n!H\nServerList|L|h\n");
}

} // namespace
