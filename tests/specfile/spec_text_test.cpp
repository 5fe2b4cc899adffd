#include "specfile/spec_text.h"

#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;

class SpecFile : public testing::Test {
protected:
    ~SpecFile() override { std::remove(path.c_str()); }

    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }

    const ScratchFolder scratch;
    const std::string path = scratch.path_of("file.spec");
};

TEST_F(SpecFile, IsReadByteByByte) {
    const std::string bytes = "\r\n\x1B\0\xFF\r\r\n\n\rend"s;
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
}

TEST_F(SpecFile, EndsBeforeAByte26) {
    write("X\nAgent\n!G\n\x1A");
    EXPECT_EQ(read_spec_file(path), "X\nAgent\n!G\n");
    write("X\r\n\r\x1A\n!G\n\x1A");
    EXPECT_EQ(read_spec_file(path), "X\r\n\r");
    write("\x1AX\n");
    EXPECT_EQ(read_spec_file(path), "");
}

TEST_F(SpecFile, OfManyChunksEndsBeforeAByte26) {
    const std::string before(70000, 'x');
    write(before + '\x1A' + std::string(70000, 'y') + "\x1Az");
    EXPECT_TRUE(read_spec_file(path) == before);
}

TEST_F(SpecFile, MayBeEmpty) {
    write("");
    EXPECT_EQ(read_spec_file(path), "");
}

TEST_F(SpecFile, OfManyChunksIsReadWhole) {
    std::string bytes;
    for (int i = 0; i < 60000; ++i)
        bytes += "line " + std::to_string(i) + "\r\n";
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
    bytes.resize(65536);
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
}

TEST_F(SpecFile, MissingOrADirectoryIsNoFile) {
    EXPECT_EQ(read_spec_file("no such file"), std::nullopt);
    EXPECT_EQ(read_spec_file(""), std::nullopt);
    EXPECT_EQ(read_spec_file("."), std::nullopt);
}

std::vector<std::string> lines_of(const std::string& text) {
    LineReader reader(text);
    std::vector<std::string> lines;
    while (!reader.at_end())
        lines.emplace_back(reader.read());
    return lines;
}

TEST(LineReader, ReadsLineFeedAndCarriageReturnLineFeedAlike) {
    EXPECT_THAT(lines_of("one\ntwo\r\nthree\n"), ElementsAre("one", "two", "three"));
}

TEST(LineReader, TakesALastLineWithoutEnd) {
    EXPECT_THAT(lines_of("one\ntwo"), ElementsAre("one", "two"));
    EXPECT_THAT(lines_of("one\n\n"), ElementsAre("one", ""));
    EXPECT_THAT(lines_of("\n"), ElementsAre(""));
    EXPECT_THAT(lines_of(""), ElementsAre());
}

TEST(LineReader, RemovesOnlyOneCarriageReturnAndOnlyBeforeALineFeed) {
    EXPECT_THAT(lines_of("a\r\r\nb"), ElementsAre("a\r", "b"));
    EXPECT_THAT(lines_of("a\rb\nc"), ElementsAre("a\rb", "c"));
    EXPECT_THAT(lines_of("last\r"), ElementsAre("last\r"));
    EXPECT_THAT(lines_of("\r\n"), ElementsAre(""));
    EXPECT_THAT(lines_of("\r"), ElementsAre("\r"));
}

TEST(LineReader, KeepsEveryOtherByte) {
    EXPECT_THAT(lines_of("zero\0byte\n\x1A\xE4\xFF\n \t x \t"s),
                ElementsAre("zero\0byte"s, "\x1A\xE4\xFF", " \t x \t"));
}

TEST(LineReader, LooksAheadWithoutConsuming) {
    LineReader reader("$a\n");
    EXPECT_TRUE(reader.next_starts_with('$'));
    EXPECT_FALSE(reader.next_starts_with('!'));
    EXPECT_EQ(reader.read(), "$a");
    EXPECT_FALSE(reader.next_starts_with('$'));
    EXPECT_TRUE(reader.at_end());
}

TEST(LineReader, ReadsEmptyLinesBeyondTheEnd) {
    LineReader reader("a");
    EXPECT_EQ(reader.read(), "a");
    EXPECT_EQ(reader.read(), "");
    EXPECT_EQ(reader.read(), "");
}

TEST(LineReader, CountsLinesFromOne) {
    LineReader reader("a\r\n\nc");
    for (const std::size_t number : {1U, 2U, 3U}) {
        reader.read();
        EXPECT_EQ(reader.line_number(), number);
    }
}

/// The statements of a file as texts, each beginning with its line number.
class Sayings {
public:
    static std::vector<std::string> of(const std::string& text) {
        Sayings sayings;
        SpecReader reader(text);
        sayings.say("path", reader.registry_path());
        sayings.say(reader.is_old() ? "old" : "name", reader.name());
        while (const SpecStatement* const statement = reader.next())
            std::visit([&](const auto& said) { sayings.take(said); }, *statement);
        return sayings.all_;
    }

private:
    void say(const std::string& what, const SpecLine& line) {
        all_.push_back(std::to_string(line.number) + " " + what + " " + std::string(line.text));
    }
    void take(const ServiceName& service) { say("service", service.name); }
    void take(const GroupStart& group) { say(group.is_implied ? "implied group" : "group", group.name); }
    void take(const SpecError& error) { say("error", {error.text, error.line}); }
    void take(const Declaration& declaration) {
        say("title", declaration.title);
        say("value", declaration.value_name);
        say("help", declaration.help_text);
        say(declaration.kind != nullptr ? "type" : "unknown", declaration.type);
        for (const SpecLine& line : declaration.further)
            say("further", line);
    }

    std::vector<std::string> all_;
};

TEST(SpecReader, TellsWhereInANewFileEachTextStands) {
    EXPECT_THAT(
        Sayings::of("\\\\SOFTWARE\\X\r\nAgent\r\n\r\nService\r\n!G\r\n$A\r\nValue\r\nHelp\r\nString\r\n"),
        ElementsAre("1 path SOFTWARE\\X", "2 name Agent", "4 service Service", "5 group G", "6 title A",
                    "7 value Value", "8 help Help", "9 type String"));
}

TEST(SpecReader, TellsWhereInAnOldFileEachTextStands) {
    EXPECT_THAT(Sayings::of("X\n$A\na\nh\n$B\nb\nh\nBoolean\n\n$C\nc\nh\n!G\n\nService"),
                ElementsAre("1 path X", "0 old ", "2 implied group ", "2 title A", "3 value a", "4 help h",
                            "0 type Integer", "5 title B", "6 value b", "7 help h", "8 type Boolean",
                            "10 implied group ", "10 title C", "11 value c", "12 help h", "0 type Integer",
                            "13 group G", "15 service Service"));
}

TEST(SpecReader, ReadsTheFurtherLinesOfEachKind) {
    EXPECT_THAT(
        Sayings::of("X\nN\n!G\n$O\no\nh\nOptions\none\n\ntwo\n$F\nf\nh\nFile\nlog\n$f\nf\nh\nFile\n!H\n"),
        ElementsAre("1 path X", "2 name N", "3 group G", "4 title O", "5 value o", "6 help h",
                    "7 type Options", "8 further one", "9 further ", "10 further two", "11 title F",
                    "12 value f", "13 help h", "14 type File", "15 further log", "16 title f", "17 value f",
                    "18 help h", "19 type File", "20 group H"));
    EXPECT_THAT(Sayings::of("X\nN\n!G\n$T\nt\nh\nConnectionTest\n$a\n!b\n\nd\n$S\ns\nh\nCOM\nService"),
                ElementsAre("1 path X", "2 name N", "3 group G", "4 title T", "5 value t", "6 help h",
                            "7 type ConnectionTest", "8 further $a", "9 further !b", "10 further ",
                            "11 further d", "12 title S", "13 value s", "14 help h", "15 type COM",
                            "16 service Service"));
}

TEST(SpecReader, NumbersTheLinesThatAreMissingZero) {
    EXPECT_THAT(Sayings::of(""), ElementsAre("0 path ", "0 name "));
    EXPECT_THAT(Sayings::of("X\nN\n!G\n$A\na"), ElementsAre("1 path X", "2 name N", "3 group G", "4 title A",
                                                            "5 value a", "0 help ", "0 unknown "));
    EXPECT_THAT(Sayings::of("X\nN\n!G\n$T\nt\nh\nConnectionTest\na"),
                ElementsAre("1 path X", "2 name N", "3 group G", "4 title T", "5 value t", "6 help h",
                            "7 type ConnectionTest", "8 further a", "0 further ", "0 further ",
                            "0 further "));
}

TEST(SpecReader, GoesOnBehindAnError) {
    EXPECT_THAT(Sayings::of("X\nN\nService\nrest\n!G\n$A\na\nh\nboolean\n\n$B\n$C\n"),
                ElementsAre("1 path X", "2 name N", "3 service Service",
                            "4 error Parse error: line \"rest\" not group start", "5 group G", "6 title A",
                            "7 value a", "8 help h", "9 unknown boolean",
                            "11 error Parse error: line \"$B\" not group start",
                            "12 error Parse error: line \"$C\" not group start"));
}

TEST(SpecReader, GivesViewsIntoTheText) {
    const std::string text = "X\nN\n!G\n$A\na\nh\nString\n";
    SpecReader reader(text);
    reader.next();
    const SpecStatement* const statement = reader.next();
    EXPECT_EQ(std::get<Declaration>(*statement).title.text.data(), text.data() + text.find('A'));
}

TEST(SpecReader, SaysNothingMoreAtTheEnd) {
    SpecReader reader("X\nN\n\n\n");
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_EQ(reader.next(), nullptr);
}

/// The error of the only declaration, with its line's number.
std::string unknown_type_in(const std::string& text) {
    SpecReader reader(text);
    reader.next();
    const SpecStatement* const statement = reader.next();
    const SpecError error = unknown_type(std::get<Declaration>(*statement));
    return std::to_string(error.line) + ": " + error.text;
}

TEST(UnknownType, IsFoundWhereTheTypeStands) {
    EXPECT_EQ(unknown_type_in("X\nN\n!G\n$A\na\nh\nReal\n"), "7: Unknown type: \"Real\", for subspec A");
    EXPECT_EQ(unknown_type_in("X\nN\n!G\n$A\na\nh\n\n"), "7: Unknown type: \"\", for subspec A");
}

TEST(UnknownType, IsFoundAtTheTitleWhereTheFileEndsBeforeIt) {
    EXPECT_EQ(unknown_type_in("X\nN\n!G\n$A\na\nh\n"), "4: Unknown type: \"\", for subspec A");
    EXPECT_EQ(unknown_type_in("X\nN\n!G\n$A"), "4: Unknown type: \"\", for subspec A");
}

} // namespace
