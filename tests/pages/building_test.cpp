#include "pages/building.h"

#include "pages/test_key.h"
#include "support/boxes.h"
#include "support/spec_text.h"

#include <gmock/gmock.h>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string new_head = "\\" + test_key + "\nAgent\n";
const std::string old_head = "\\" + test_key + "\n";

class Building : public SpecKeyTest {};

// ---- head of the file

TEST_F(Building, AnEmptyFileIsANewFileWithoutAnything) {
    const TraceLog log;
    const auto parsed = parse("");
    EXPECT_EQ(parsed->registryPath, "");
    EXPECT_EQ(parsed->name, "");
    EXPECT_EQ(parsed->serviceName, "");
    EXPECT_THAT(parsed->groups, IsEmpty());
    EXPECT_FALSE(parsed->offersConnectionTest);
    EXPECT_THAT(TraceLog::lines(), ElementsAre("Reading new file\n"));
}

TEST_F(Building, AFreshConfigurationHasNoBookkeeping) {
    const auto parsed = parse("");
    EXPECT_THAT(parsed->entry_items, IsEmpty());
    EXPECT_THAT(parsed->node_items, IsEmpty());
    EXPECT_EQ(parsed->shown_entry, nullptr);
    EXPECT_THAT(parsed->changed_entries, IsEmpty());
    EXPECT_EQ(parsed->agent_name_title + parsed->agent_domain_title + parsed->server_list_title +
                  parsed->default_port_title,
              "");
}

TEST_F(Building, OnlyLeadingBackslashesOfTheRegistryPathAreRemoved) {
    EXPECT_EQ(parse("\\\\SOFTWARE\\X\nAgent\n")->registryPath, "SOFTWARE\\X");
    EXPECT_EQ(parse("SOFTWARE\\\\X\\\nAgent\n")->registryPath, "SOFTWARE\\\\X\\");
    EXPECT_EQ(parse("\\\\\\\nAgent\n")->registryPath, "");
    EXPECT_EQ(parse(" \\X\nAgent\n")->registryPath, " \\X");
    EXPECT_EQ(parse("\\X")->registryPath, "X");
}

TEST_F(Building, TheSecondLineOfANewFileIsItsName) {
    const TraceLog log;
    EXPECT_EQ(parse("X\nAgent settings \r\n")->name, "Agent settings ");
    EXPECT_EQ(parse("X\n\n")->name, "");
    EXPECT_EQ(parse("X\nAgent")->name, "Agent");
    EXPECT_THAT(TraceLog::lines(),
                ElementsAre("Reading new file\n", "Reading new file\n", "Reading new file\n"));
}

TEST_F(Building, AnOldFileIsCalledLikeItsRegistryValue) {
    const TraceLog log;
    const auto parsed = parse(old_head + "!General\n");
    EXPECT_EQ(parsed->name, "From registry");
    EXPECT_EQ(parsed->registryPath, test_key);
    EXPECT_EQ(describe(*parsed), "!General\n");
    EXPECT_THAT(TraceLog::lines(), ElementsAre("Reading old file\n"));
}

TEST_F(Building, AnOldFileMayStartWithSubspecs) {
    const TraceLog log;
    const auto parsed = parse(old_head + "$A\nA\nhelp of A\n");
    EXPECT_EQ(parsed->name, "From registry");
    EXPECT_EQ(describe(*parsed), "!\nInteger|A|help of A\n");
    EXPECT_THAT(TraceLog::lines(), ElementsAre("Reading old file\n", "No groups in file\n"));
}

// ---- group level

TEST_F(Building, GroupsStandInFileOrderAndAreNeverMerged) {
    const auto parsed = parse(new_head + "!B\n!A\n\n\n!B\n!\n");
    EXPECT_EQ(describe(*parsed), "!B\n!A\n!B\n!\n");
}

TEST_F(Building, TheFirstOtherLineAtGroupLevelIsTheServiceName) {
    EXPECT_EQ(parse(new_head + "\n\r\nAgentService\n!G\n")->serviceName, "AgentService");
    EXPECT_EQ(parse(new_head + "!G\n\nAgentService")->serviceName, "AgentService");
    EXPECT_EQ(parse(old_head + "!G\n\n AgentService \n")->serviceName, " AgentService ");
}

TEST_F(Building, TheSecondOtherLineAtGroupLevelIsAnError) {
    EXPECT_EQ(parse_failure(new_head + "Service\nSecond line\n"),
              "Parse error: line \"Second line\" not group start");
    EXPECT_EQ(parse_failure(old_head + "!G\nService\n\nSecond\tline \n!H\n"),
              "Parse error: line \"Second\tline \" not group start");
    EXPECT_EQ(parse_failure(new_head + "Service\n \n", true), "Parse error: line \" \" not group start");
}

TEST_F(Building, ASubspecAtGroupLevelOfANewFileIsTakenForTheServiceName) {
    const auto parsed = parse(new_head + "!G\n$A\nA\nhelp\nString\n\n$B\n");
    EXPECT_EQ(parsed->serviceName, "$B");
    EXPECT_EQ(parse_failure(new_head + "Service\n!G\n\n$B\n"), "Parse error: line \"$B\" not group start");
}

TEST_F(Building, EveryRunOfSubspecsOutsideAGroupGetsItsOwnUnnamedGroup) {
    const TraceLog log;
    const auto parsed = parse(old_head + "$A\nA\nhelp\n$B\nB\nhelp\nString\n\n$C\nC\nhelp\n!G\n$D\nD\nhelp\n"
                                         "Integer\n\n$E\nE\nhelp\n");
    EXPECT_EQ(describe(*parsed), "!\nInteger|A|help\nString|B|help\n"
                                 "!\nInteger|C|help\n"
                                 "!G\nInteger|D|help\n"
                                 "!\nInteger|E|help\n");
    EXPECT_THAT(TraceLog::lines(), ElementsAre("Reading old file\n", "No groups in file\n",
                                               "No groups in file\n", "No groups in file\n"));
}

TEST_F(Building, LineEndsReadAlike) {
    const std::string with_feeds = new_head + "Service\n!G\n$A\nA\nhelp\nString\n\n!H\n";
    std::string with_returns;
    for (const char c : with_feeds)
        with_returns += c == '\n' ? "\r\n" : std::string(1, c);
    const auto parsed = parse(with_returns);
    EXPECT_EQ(parsed->registryPath, test_key);
    EXPECT_EQ(parsed->name, "Agent");
    EXPECT_EQ(parsed->serviceName, "Service");
    EXPECT_EQ(describe(*parsed), "!G\nString|A|help\n!H\n");
    EXPECT_EQ(describe(*parsed), describe(*parse(with_feeds)));
}

// ---- subspecs

TEST_F(Building, TitlesAndHelpTextsAreTakenAsTheyStand) {
    const auto parsed =
        parse(new_head + "!! G \n$$ A\t\nA\n  \xE4\xF6 \"help\" %s\nString\n$\nB\n\nString\n");
    EXPECT_EQ(describe(*parsed), "!! G \nString|$ A\t|  \xE4\xF6 \"help\" %s\nString||\n");
}

TEST_F(Building, AZeroByteInALineIsKept) {
    const auto parsed = parse("X\nA\0B\n!G\0H\n"s);
    EXPECT_EQ(parsed->name, "A\0B"s);
    EXPECT_EQ(parsed->groups.at(0).name, "G\0H"s);
}

TEST_F(Building, AnOldSubspecOfThreeLinesIsAnInteger) {
    EXPECT_EQ(describe(*parse(old_head + "$Port\nPort\nTCP port\n$Name\nName\nhelp\nstring\n")),
              "!\nInteger|Port|TCP port\nString|Name|help\n");
    EXPECT_EQ(describe(*parse(old_head + "!G\n$Port\nPort\nTCP port\n!H\n")),
              "!G\nInteger|Port|TCP port\n!H\n");
}

TEST_F(Building, AnOldSubspecCutOffAtTheEndOfTheFileIsAnInteger) {
    EXPECT_EQ(describe(*parse(old_head + "$Port\nPort\nhelp")), "!\nInteger|Port|help\n");
    EXPECT_EQ(describe(*parse(old_head + "$Port\nPort\n")), "!\nInteger|Port|\n");
    EXPECT_EQ(describe(*parse(old_head + "!G\n$Port")), "!G\nInteger|Port|\n");
}

TEST_F(Building, SubspecLinesOfANewFileAreTakenWhateverTheyStartWith) {
    EXPECT_EQ(describe(*parse(new_head + "!G\n$A\n$value\n!help\nString\n$B\n!v\n$h\nString\n")),
              "!G\nString|A|!help\nString|B|$h\n");
}

TEST_F(Building, TheConnectionTestThrowsOnUnknownTypes) {
    EXPECT_EQ(parse_failure(new_head + "!G\n$A title\nA\nhelp\nReal\n", true),
              "Unknown type: \"Real\", for subspec A title");
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\nA\nhelp\nBoolean \n", true),
              "Unknown type: \"Boolean \", for subspec A");
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\nA\nhelp\nSTRING\n", true),
              "Unknown type: \"STRING\", for subspec A");
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\nA\nhelp\n$B\n", true), "Unknown type: \"$B\", for subspec A");
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\n", true), "Unknown type: \"\", for subspec A");
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\nA\nhelp\n", true), "Unknown type: \"\", for subspec A");
}

TEST_F(Building, AnUnknownTypeIsShownAndSkipped) {
    const Boxes boxes;
    const auto parsed = parse(new_head + "!G\n$A title\nA\nhelp\nReal\n$B\nB\nhelp\nBoolean \n"
                                         "$C\nC\nhelp\nString\n$D\n");
    EXPECT_EQ(describe(*parsed), "!G\nString|C|help\n");
    ASSERT_EQ(boxes.seen().size(), 3U);
    EXPECT_EQ(boxes.seen()[0].text, "Unknown type: \"Real\", for subspec A title");
    EXPECT_EQ(boxes.seen()[1].text, "Unknown type: \"Boolean \", for subspec B");
    EXPECT_EQ(boxes.seen()[2].text, "Unknown type: \"\", for subspec D");
    for (const SeenBox& box : boxes.seen()) {
        EXPECT_EQ(box.caption, "Error");
        EXPECT_EQ(box.style, MB_OK | MB_ICONERROR);
        EXPECT_EQ(box.owner, nullptr);
    }
}

TEST_F(Building, TellsUnknownTypesToWhomItWasHanded) {
    const Boxes no_box;
    Configuration configuration(false);
    std::vector<std::string> told;
    build_settings(configuration, "", new_head + "!G\n$A\nA\nh\nReal\n$B\nB\nh\nString\n$C\n",
                   [&](const SpecError& error) {
                       told.push_back(std::to_string(error.line) + ": " + error.text + ", " +
                                      std::to_string(configuration.groups.at(0).entries.size()));
                   });
    EXPECT_THAT(told, ElementsAre("7: Unknown type: \"Real\", for subspec A, 0",
                                  "12: Unknown type: \"\", for subspec C, 1"));
    EXPECT_EQ(describe(configuration), "!G\nString|B|h\n");
    EXPECT_THAT(no_box.seen(), IsEmpty());
}

TEST_F(Building, AGroupStartInPlaceOfATypeIsSwallowed) {
    const Boxes boxes;
    const auto parsed = parse(new_head + "!G1\n$Port\nPort\nTCP port\n!G2\n$Name\nName\nhelp\nString\n");
    EXPECT_EQ(describe(*parsed), "!G1\nString|Name|help\n");
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].text, "Unknown type: \"!G2\", for subspec Port");
}

TEST_F(Building, ABlankFourthLineOfAnOldSubspecIsAType) {
    EXPECT_EQ(parse_failure(old_head + "$A\nA\nhelp\n\n", true), "Unknown type: \"\", for subspec A");
}

// ---- the two modes

const std::string every_type = "!G\n"
                               "$S\nS\nh\nString\n"
                               "$s\ns\nh\nstring\n"
                               "$I\nI\nh\nInteger\n"
                               "$B\nB\nh\nBoolean\n"
                               "$O\nO\nh\nOptions\nfirst\nsecond\n"
                               "$C\nC\nh\nCOM\n"
                               "$R\nR\nh\nRemoveKey\n"
                               "$E\nE\nh\nSignalEvent\n"
                               "$D\nD\nh\nDirectory\n"
                               "$F\nF\nh\nFile\nlog\n"
                               "$L\nL\nh\nServerList\n"
                               "$T\nT\nh\nConnectionTest\nname\ndomain\nlist\nport\n";

TEST_F(Building, EveryTypeHasItsEntry) {
    const auto parsed = parse(new_head + every_type);
    EXPECT_EQ(describe(*parsed), "!G\nString|S|h\nString|s|h\nInteger|I|h\nBoolean|B|h\nOptions|O|h\n"
                                 "Options|C|h\nRemoveKey|R|h\nSignalEvent|E|h\nDirectory|D|h\nFile|F|h\n"
                                 "ServerList|L|h\n");
    EXPECT_TRUE(parsed->offersConnectionTest);
    EXPECT_FALSE(parsed->connectionTestOnly);
}

TEST_F(Building, TheConnectionTestNeedsTheServerListOnly) {
    delete_key(test_key);
    const auto parsed = parse(new_head + every_type, true);
    EXPECT_EQ(describe(*parsed), "!G\nServerList|L|h\n");
    EXPECT_TRUE(parsed->offersConnectionTest);
    EXPECT_TRUE(parsed->connectionTestOnly);
    EXPECT_EQ(parsed->server_list_title, "list");
}

TEST_F(Building, AKeyThatCannotBeReadEndsTheParse) {
    delete_key(test_key);
    EXPECT_EQ(parse_failure(new_head + "!G\n$A\nA\nh\nString\n"),
              "Cannot open path \"SOFTWARE\\TavrinTests\" for reading");
}

} // namespace
