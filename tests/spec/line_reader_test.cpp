#include "spec/line_reader.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;

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

} // namespace
