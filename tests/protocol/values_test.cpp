#include "protocol/values.h"

#include "net/memory.h"
#include "support/outcome.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <limits>
#include <memory>

namespace {

using testing::IsNull;
using testing::StrEq;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr std::uint32_t boolean_tag = 8;
constexpr std::uint32_t integer_tag = 16;
constexpr std::uint32_t string_tag = 32;
const std::string bad_length = "data out of range in read_length";

/// `tag` is the identifier that was read already, or 0.
std::string integer_of(const Octets& octets, std::uint32_t tag = 0, std::int32_t min = lowest,
                       std::int32_t max = highest) {
    MemoryStream stream(octets);
    std::int32_t value = 7;
    const char* problem = read_signed_int(&stream, min, max, &value, tag);
    EXPECT_TRUE(problem == nullptr || value == 7);
    return outcome(problem, std::to_string(value), stream);
}

std::string port_of(const Octets& octets) { return integer_of(octets, 0, 0, 65535); }

struct Integer {
    Octets octets;
    std::int32_t value;
};

TEST(Integers, AreWrittenInTheShortestFormAndRead) {
    const Integer integers[] = {{"02 00"_octets, 0},
                                {"02 01 01"_octets, 1},
                                {"02 01 FF"_octets, -1},
                                {"02 01 7F"_octets, 127},
                                {"02 02 00 80"_octets, 128},
                                {"02 02 00 81"_octets, 129},
                                {"02 01 81"_octets, -127},
                                {"02 01 80"_octets, -128},
                                {"02 02 FF 7F"_octets, -129},
                                {"02 02 00 FF"_octets, 255},
                                {"02 02 01 00"_octets, 256},
                                {"02 02 01 01"_octets, 257},
                                {"02 02 02 02"_octets, 514},
                                {"02 02 7F FF"_octets, 32767},
                                {"02 03 00 80 00"_octets, 32768},
                                {"02 03 00 80 01"_octets, 32769},
                                {"02 02 80 01"_octets, -32767},
                                {"02 02 80 00"_octets, -32768},
                                {"02 03 FF 7F FF"_octets, -32769},
                                {"02 03 00 FF FF"_octets, 65535},
                                {"02 03 01 00 00"_octets, 65536},
                                {"02 03 7F FF FF"_octets, 8388607},
                                {"02 04 00 80 00 00"_octets, 8388608},
                                {"02 04 00 80 00 01"_octets, 8388609},
                                {"02 03 80 00 01"_octets, -8388607},
                                {"02 03 80 00 00"_octets, -8388608},
                                {"02 04 FF 7F FF FF"_octets, -8388609},
                                {"02 04 7F FF FF FF"_octets, highest},
                                {"02 04 80 00 00 00"_octets, lowest},
                                {"02 04 80 00 00 01"_octets, -highest}};
    for (const auto& [octets, value] : integers) {
        SCOPED_TRACE(value);
        MemoryStream stream;
        EXPECT_THAT(write_signed_int(&stream, lowest, highest, value), IsNull());
        EXPECT_EQ(stream.received, octets);
        EXPECT_EQ(stream.writes, 1);
        EXPECT_EQ(integer_of(octets + "55"_octets), std::to_string(value) + ", 1 left");
        EXPECT_EQ(integer_of(Octets(octets.begin() + 1, octets.end()), integer_tag), std::to_string(value));
        expect_no_beginning_is_enough(octets, [](const Octets& cut) { return integer_of(cut); });
    }
}

TEST(ReadSignedInt, TakesMoreOctetsThanNeeded) {
    const Integer longer[] = {
        {"02 01 00"_octets, 0},           {"02 02 00 00"_octets, 0}, {"02 04 00 00 00 05"_octets, 5},
        {"02 04 FF FF FF FE"_octets, -2}, {"02 81 01 05"_octets, 5}, {"02 84 00 00 00 02 02 02"_octets, 514},
        {"02 81 00"_octets, 0},           {"1F 02 01 05"_octets, 5}, {"19 19 02 01 05"_octets, 5}};
    for (const auto& [octets, value] : longer)
        EXPECT_EQ(integer_of(octets), std::to_string(value));
}

TEST(ReadSignedInt, RefusesBadElements) {
    const std::string range = "data out of range in read_signed_int";
    const std::string tag = "Wrong tag, expected BE_INTEGER";
    const BadElement bad[] = {
        {"a boolean", "01 01 05"_octets, tag + ", 2 left"},
        {"an end of contents", "00 00"_octets, tag + ", 1 left"},
        {"an integer of another class", "42 01 05"_octets, tag + ", 2 left"},
        {"a constructed integer", "22 01 05"_octets, tag + ", 2 left"},
        {"indefinite", "02 80 05 00 00"_octets, range + ", 3 left"},
        {"five octets of content", "02 05 00 00 00 00 01"_octets, range + ", 5 left"},
        {"announces 4 GiB", "02 84 FF FF FF FF"_octets, range},
        {"five octets of length", "02 85 00 00 00 00 01 05"_octets, bad_length + ", 6 left"},
        {"the longest length of length", "02 FF 05"_octets, bad_length + ", 1 left"},
        {"one more than the highest", "02 03 01 00 00"_octets, range},
        {"one less than the lowest", "02 01 FF"_octets, range},
        {"the highest of all", "02 04 7F FF FF FF"_octets, range},
    };
    for (const BadElement& each : bad)
        EXPECT_EQ(port_of(each.octets), each.outcome) << each.what;
    EXPECT_EQ(integer_of("01 05"_octets, boolean_tag), tag + ", 2 left");
}

TEST(ReadSignedInt, TakesTheWholeRangeAndNothingBeside) {
    const auto small = [](const Octets& octets) { return integer_of(octets, 0, -2, 3); };
    EXPECT_EQ(small("02 01 FE"_octets), "-2");
    EXPECT_EQ(small("02 01 03"_octets), "3");
    EXPECT_EQ(small("02 00"_octets), "0");
    EXPECT_EQ(small("02 01 FD"_octets), "data out of range in read_signed_int");
    EXPECT_EQ(small("02 01 04"_octets), "data out of range in read_signed_int");
    EXPECT_EQ(integer_of("02 00"_octets, 0, 1, 9), "data out of range in read_signed_int");
}

TEST(WriteSignedInt, WritesNothingThatIsOutOfRange) {
    for (const std::int32_t value : {-1, 65536, lowest, highest}) {
        MemoryStream stream;
        EXPECT_THAT(write_signed_int(&stream, 0, 65535, value),
                    StrEq("data out of range in write_signed_int"));
        EXPECT_EQ(stream.writes, 0);
    }
}

std::string boolean_of(const Octets& octets, std::uint32_t tag = 0, bool before = false) {
    MemoryStream stream(octets);
    bool value = before;
    const char* problem = read_bool(&stream, &value, tag);
    EXPECT_TRUE(problem == nullptr || value == before);
    return outcome(problem, value ? "true" : "false", stream);
}

TEST(WriteBool, WritesFalseAsZeroAndTrueAsOne) {
    MemoryStream stream;
    EXPECT_THAT(write_bool(&stream, false), IsNull());
    EXPECT_EQ(stream.received, "01 01 00"_octets);
    EXPECT_THAT(write_bool(&stream, true), IsNull());
    EXPECT_EQ(stream.received, "01 01 00 01 01 01"_octets);
    EXPECT_EQ(stream.writes, 2);
}

TEST(ReadBool, TakesEveryOctetButZeroForTrue) {
    EXPECT_EQ(boolean_of("01 01 00"_octets, 0, true), "false");
    for (unsigned octet = 1; octet < 256; ++octet)
        EXPECT_EQ(boolean_of("01 01"_octets + Octets{static_cast<std::uint8_t>(octet)}), "true") << octet;
    EXPECT_EQ(boolean_of("01 01"_octets, boolean_tag), "true");
}

TEST(ReadBool, TakesLongLengths) {
    EXPECT_EQ(boolean_of("01 81 01 01"_octets), "true");
    EXPECT_EQ(boolean_of("19 01 84 00 00 00 01 01"_octets), "true");
    for (const Octets& whole : {"01 01 01"_octets, "01 82 00 01 01"_octets})
        expect_no_beginning_is_enough(whole, [](const Octets& cut) { return boolean_of(cut); });
}

TEST(ReadBool, RefusesBadElements) {
    const std::string range = "data out of range in read_bool";
    const std::string tag = "Wrong tag, expected BE_BOOLEAN";
    const BadElement bad[] = {
        {"an integer", "02 01 01"_octets, tag + ", 2 left"},
        {"an end of contents", "00 00"_octets, tag + ", 1 left"},
        {"a boolean of another class", "81 01 01"_octets, tag + ", 2 left"},
        {"no content", "01 00"_octets, range},
        {"two octets of content", "01 02 00 01"_octets, range + ", 2 left"},
        {"indefinite, or no length octets", "01 80 01"_octets, range + ", 1 left"},
        {"long form of no content", "01 81 00"_octets, range},
        {"length with the right low octet", "01 82 01 01 01"_octets, range + ", 1 left"},
        {"announces 4 GiB", "01 84 FF FF FF FF"_octets, range},
        {"five octets of length", "01 85 00 00 00 00 01 01"_octets, bad_length + ", 6 left"},
    };
    for (const BadElement& each : bad)
        EXPECT_EQ(boolean_of(each.octets), each.outcome) << each.what;
    EXPECT_EQ(boolean_of("01 01"_octets, integer_tag), tag + ", 2 left");
}

/// A text is shown as long as it is not null; `length` is what it must have.
std::string string_of(const Octets& octets, std::uint32_t max, std::uint32_t tag = 0,
                      std::size_t length = 0) {
    MemoryStream stream(octets);
    char* text = nullptr;
    const char* problem = read_string(&stream, max, &text, tag);
    const std::unique_ptr<char, net::FreeMemory> owner(text);
    EXPECT_EQ(problem == nullptr, text != nullptr);
    const std::string shown = text == nullptr ? "" : length > 0 ? std::string(text, length) : text;
    return outcome(problem, '"' + shown + '"', stream);
}

/// The head of a string of so many octets.
const std::pair<std::uint32_t, Octets> string_heads[] = {
    {125, "04 7D"_octets},           {126, "04 7E"_octets},        {127, "04 7F"_octets},
    {128, "04 81 80"_octets},        {129, "04 81 81"_octets},     {255, "04 81 FF"_octets},
    {256, "04 82 01 00"_octets},     {1024, "04 82 04 00"_octets}, {65535, "04 82 FF FF"_octets},
    {65536, "04 83 01 00 00"_octets}};

TEST(Strings, MayHaveEveryLengthUpToTheMaximum) {
    for (const auto& [length, head] : string_heads) {
        const std::string text(length, 'x');
        MemoryStream stream;
        EXPECT_THAT(write_string(&stream, length, text.c_str()), IsNull());
        EXPECT_TRUE(stream.received == head + Octets(length, 'x')) << length;
        EXPECT_TRUE(string_of(stream.received, length) == '"' + text + '"') << length;
        EXPECT_EQ(string_of(stream.received, length - 1),
                  "data out of range in read_string, " + std::to_string(length) + " left");
    }
}

TEST(WriteString, WritesOctetsOfText) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 4, "web1"), IsNull());
    EXPECT_EQ(stream.received, "04 04 77 65 62 31"_octets);
}

TEST(WriteString, WritesAnAbsentTextAsAnEmptyOne) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 256, nullptr), IsNull());
    EXPECT_THAT(write_string(&stream, 0, ""), IsNull());
    EXPECT_EQ(stream.received, "04 00 04 00"_octets);
}

TEST(WriteString, HasSentTheIdentifierOfATextThatIsTooLong) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 3, "web1"), StrEq("data out of range in write_string"));
    EXPECT_EQ(stream.received, "04"_octets);
}

TEST(WritingValues, HandsOnTheStreamsFailure) {
    const std::string long_text(200, 'x'); // which is sent apart from its head
    for (const std::size_t sent : {0, 1, 3}) {
        MemoryStream stream;
        stream.break_after(sent, "no more room");
        EXPECT_THAT(write_string(&stream, 200, long_text.c_str()), StrEq("no more room"));
        EXPECT_EQ(stream.received.size(), sent);
    }
    MemoryStream stream;
    stream.break_after(0, "no more room");
    EXPECT_THAT(write_string(&stream, 3, "web1"), StrEq("no more room"));
    EXPECT_THAT(write_string(&stream, 4, "web1"), StrEq("no more room"));
    EXPECT_THAT(write_signed_int(&stream, 0, 65535, 1), StrEq("no more room"));
    EXPECT_THAT(write_bool(&stream, true), StrEq("no more room"));
}

TEST(ReadString, KeepsEveryOctet) {
    EXPECT_EQ(string_of("04 04 77 65 62 31 55"_octets, 256), "\"web1\", 1 left");
    EXPECT_EQ(string_of("02 6E 6F"_octets, 256, string_tag), "\"no\"");
    EXPECT_EQ(string_of("04 05 41 00 FF 0A 42"_octets, 256, 0, 6), std::string("\"A\0\xFF\nB\0\"", 8));
    for (const Octets& empty : {"04 00"_octets, "04 81 00"_octets, "19 04 84 00 00 00 00"_octets})
        EXPECT_EQ(string_of(empty, 0), "\"\"");
    expect_no_beginning_is_enough("04 82 00 04 77 65 62 31"_octets,
                                  [](const Octets& cut) { return string_of(cut, 1024); });
}

TEST(ReadString, RefusesBadElements) {
    const std::string range = "data out of range in read_string";
    const std::string tag = "Wrong tag, expected BE_STRING";
    const BadElement bad[] = {
        {"an integer", "02 01 41"_octets, tag + ", 2 left"},
        {"an end of contents", "00 00"_octets, tag + ", 1 left"},
        {"a constructed string", "24 80 00 00"_octets, tag + ", 3 left"},
        {"indefinite", "04 80 41 00 00"_octets, range + ", 3 left"},
        {"announces 2 GiB", "04 84 80 00 00 00 41"_octets, range + ", 1 left"},
        {"announces 4 GiB", "04 84 FF FF FF FF 41"_octets, range + ", 1 left"},
        {"five octets of length", "04 85 00 00 00 00 01 41"_octets, bad_length + ", 6 left"},
        {"the longest length of length", "04 FF 41"_octets, bad_length + ", 1 left"},
    };
    for (const BadElement& each : bad)
        EXPECT_EQ(string_of(each.octets, 1024), each.outcome) << each.what;
    EXPECT_EQ(string_of("01 41"_octets, 1024, integer_tag), tag + ", 2 left");
}

/// The sizes that are asked for are noted, and none is given.
class NoMemory : public testing::Test {
protected:
    NoMemory() {
        asked.clear();
        net::resize_memory = [](void*, std::size_t size) -> void* {
            asked.push_back(size);
            return nullptr;
        };
    }
    ~NoMemory() override { net::resize_memory = std::realloc; }

    static inline std::vector<std::size_t> asked;
};

TEST_F(NoMemory, IsSaidBeforeAContentIsRead) {
    EXPECT_EQ(string_of("04 04 77 65 62 31"_octets, 1024), "Unable to allocate data in read_string, 4 left");
    EXPECT_THAT(asked, testing::ElementsAre(5));
}

TEST_F(NoMemory, IsNotAskedForATextThatIsTooLong) {
    EXPECT_EQ(string_of("04 84 FF FF FF FF"_octets, 1024), "data out of range in read_string");
    EXPECT_THAT(asked, testing::IsEmpty());
}

} // namespace
