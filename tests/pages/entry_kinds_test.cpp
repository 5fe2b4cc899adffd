#include "specfile/spec_text.h"

#include "pages/test_key.h"
#include "support/page.h"
#include "support/spec_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EntryKinds : public SpecKeyTest {
protected:
    static std::unique_ptr<Configuration> parse_group(const std::string& subspecs) {
        return parse("\\" + test_key + "\nAgent\n!G\n" + subspecs);
    }

    /// What the drop-down list of the first entry offers.
    static std::vector<std::string> offered(const std::string& subspecs) {
        const auto configuration = parse_group(subspecs);
        const StandInMainWindow main(436, 229);
        BaseEntry& entry = *configuration->groups.at(0).entries.at(0);
        entry.select(main.window());
        std::vector<std::string> options;
        const LRESULT count = SendMessageA(main.control(1), CB_GETCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            char text[64] = "";
            SendMessageA(main.control(1), CB_GETLBTEXT, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(text));
            options.emplace_back(text);
        }
        return options;
    }
};

TEST_F(EntryKinds, TypeLinesMatchExactly) {
    EXPECT_NE(find_entry_kind("String"), nullptr);
    EXPECT_NE(find_entry_kind("string"), nullptr);
    for (const char* other : {"", "STRING", "integer", " String", "String ", "Boolean\r", "Option", "Com"})
        EXPECT_EQ(find_entry_kind(other), nullptr) << other;
}

TEST_F(EntryKinds, ValuesAreReadWhileTheFileIsParsed) {
    set_text("Name", "agent-1");
    const auto parsed = parse_group("$Title\nName\nh\nString\n$Other\nMissing\nh\nDirectory\n");
    EXPECT_EQ(parsed->text_by_title("Title"), "agent-1");
    EXPECT_EQ(parsed->text_by_title("Other"), "");
}

TEST_F(EntryKinds, TheConnectionTestAloneReadsNoValue) {
    set_text("List", "server");
    const auto parsed = parse("\\" + test_key + "\nAgent\n!G\n$L\nList\nh\nServerList\n", true);
    EXPECT_EQ(parsed->text_by_title("L"), "");
}

TEST_F(EntryKinds, OptionsGoOnToTheNextSubspecOrGroup) {
    EXPECT_THAT(offered("$O\nO\nh\nOptions\nb\na\n$P\nP\nh\nString\n"), ElementsAre("b", "a"));
    EXPECT_THAT(offered("$O\nO\nh\nOptions\none\n!H\n"), ElementsAre("one"));
    EXPECT_THAT(offered("$O\nO\nh\nOptions\none\ntwo"), ElementsAre("one", "two"));
    EXPECT_THAT(offered("$O\nO\nh\nOptions\n"), IsEmpty());
}

TEST_F(EntryKinds, ABlankOptionIsAnOption) {
    EXPECT_THAT(offered("$O\nO\nh\nOptions\none\n\n!H\n"), ElementsAre("one", ""));
    EXPECT_EQ(describe(*parse_group("$O\nO\nh\nOptions\none\n\n!H\n")), "!G\nOptions|O|h\n!H\n");
}

TEST_F(EntryKinds, TheExtensionMayBeLeftOut) {
    EXPECT_EQ(describe(*parse_group("$F\nF\nh\nFile\n$G\nG\nh\nFile\n!H\n")), "!G\nFile|F|h\nFile|G|h\n!H\n");
    EXPECT_EQ(describe(*parse_group("$F\nF\nh\nFile\nlog\n$G\nG\nh\nFile")), "!G\nFile|F|h\nFile|G|h\n");
    EXPECT_EQ(describe(*parse_group("$F\nF\nh\nFile\n\n$G\nG\nh\nString\n")), "!G\nFile|F|h\nString|G|h\n");
}

TEST_F(EntryKinds, TheConnectionTestsTitlesAreReadWhateverTheyStartWith) {
    const TraceLog log;
    const auto parsed =
        parse_group("$T\nignored\nh\nConnectionTest\n$Name\n!Domain\n\n Port\n$S\nS\nh\nString\n");
    EXPECT_TRUE(parsed->offersConnectionTest);
    EXPECT_EQ(parsed->agent_name_title, "$Name");
    EXPECT_EQ(parsed->agent_domain_title, "!Domain");
    EXPECT_EQ(parsed->server_list_title, "");
    EXPECT_EQ(parsed->default_port_title, " Port");
    EXPECT_EQ(describe(*parsed), "!G\nString|S|h\n");
    EXPECT_THAT(TraceLog::lines(),
                ElementsAre("Reading new file\n", "Found a ConnectionTest1\n",
                            "Found agent_name_title: $Name\n", "Found agent_domain_title: !Domain\n",
                            "Found server_list_title: \n", "Found default_port_title:  Port\n"));
}

TEST_F(EntryKinds, ALaterConnectionTestOverwritesTheTitles) {
    const auto parsed = parse_group("$T\nv\nh\nConnectionTest\na\nb\nc\nd\n$T\nv\nh\nConnectionTest\nA\nB\n");
    EXPECT_EQ(parsed->agent_name_title, "A");
    EXPECT_EQ(parsed->agent_domain_title, "B");
    EXPECT_EQ(parsed->server_list_title, "");
    EXPECT_EQ(parsed->default_port_title, "");
}

TEST_F(EntryKinds, ARemoveKeyIsBelowTheConfigurationsKey) {
    make_key(test_key + "\\Cache");
    const auto parsed = parse_group("$R\nCache\nh\nRemoveKey\n");
    const StandInMainWindow main(436, 229);
    BaseEntry& entry = *parsed->groups.at(0).entries.at(0);
    entry.select(main.window());
    click(main.control(1));
    entry.takeValue();
    EXPECT_TRUE(entry.changed());
    entry.write();
    EXPECT_FALSE(key_exists(test_key + "\\Cache"));
    EXPECT_TRUE(key_exists(test_key));
}

TEST_F(EntryKinds, SerialPortsAreSortedByteByByte) {
    const std::string serial = R"(HARDWARE\DEVICEMAP\SERIALCOMM)";
    make_key(serial);
    ::set_text(serial, "tavrin_test_a", "ZCOM2");
    ::set_text(serial, "tavrin_test_b", "ZCOM10");
    ::set_text(serial, "tavrin_test_c", "ZCOM2");
    std::vector<std::string> ports = offered("$C\nC\nh\nCOM\nService name\n");
    for (const char* name : {"tavrin_test_a", "tavrin_test_b", "tavrin_test_c"})
        delete_value(serial, name);
    // The machine may have real ports; none of them sorts after these.
    ports.erase(ports.begin(), ports.end() - std::min<std::ptrdiff_t>(3, std::ssize(ports)));
    EXPECT_THAT(ports, ElementsAre("ZCOM10", "ZCOM2", "ZCOM2"));
}

TEST_F(EntryKinds, AComSubspecHasNoFurtherLines) {
    const auto parsed = parse_group("$C\nC\nh\nCOM\nService name\n");
    EXPECT_EQ(parsed->serviceName, "Service name");
}

TEST_F(EntryKinds, TenThousandEntriesInOneGroup) {
    set_text("V", "value");
    std::string subspecs;
    for (int i = 0; i < 10000; ++i)
        subspecs += "$Title " + std::to_string(i) + "\nV\nhelp\nString\n";
    const auto parsed = parse_group(subspecs);
    ASSERT_EQ(parsed->groups.at(0).entries.size(), 10000U);
    EXPECT_EQ(parsed->groups[0].entries.back()->title(), "Title 9999");
    EXPECT_EQ(parsed->text_by_title("Title 5000"), "value");
}

} // namespace
