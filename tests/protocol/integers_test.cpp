#include "protocol/values.h"

#include "support/memory_stream.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

using testing::IsNull;
using testing::StrEq;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr std::uint32_t integer_tag = 16;

struct Integer {
    Octets octets;
    std::int32_t value;
};

std::ostream& operator<<(std::ostream& out, const Integer& integer) { return out << integer.value; }

class Integers : public testing::TestWithParam<Integer> {};

TEST_P(Integers, AreWrittenInTheShortestForm) {
    MemoryStream stream;
    EXPECT_THAT(write_signed_int(&stream, lowest, highest, GetParam().value), IsNull());
    EXPECT_EQ(stream.received, GetParam().octets);
    EXPECT_EQ(stream.writes, 1);
}

TEST_P(Integers, AreRead) {
    MemoryStream stream(GetParam().octets + "55"_octets);
    std::int32_t value = 7;
    EXPECT_THAT(read_signed_int(&stream, lowest, highest, &value, 0), IsNull());
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(stream.unread(), 1u);
}

TEST_P(Integers, AreReadBehindTheirIdentifier) {
    MemoryStream stream(Octets(GetParam().octets.begin() + 1, GetParam().octets.end()));
    std::int32_t value = 7;
    EXPECT_THAT(read_signed_int(&stream, lowest, highest, &value, integer_tag), IsNull());
    EXPECT_EQ(value, GetParam().value);
}

TEST_P(Integers, CutShortAreNoIntegers) {
    for (std::size_t size = 0; size < GetParam().octets.size(); ++size) {
        MemoryStream stream(first_octets(GetParam().octets, size));
        std::int32_t value = 0;
        EXPECT_THAT(read_signed_int(&stream, lowest, highest, &value, 0),
                    StrEq("Peer closed connection unexpectedly"))
            << size;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Borders, Integers,
    testing::Values(Integer{"02 00"_octets, 0}, Integer{"02 01 01"_octets, 1}, Integer{"02 01 FF"_octets, -1},
                    Integer{"02 01 7F"_octets, 127}, Integer{"02 02 00 80"_octets, 128},
                    Integer{"02 02 00 81"_octets, 129}, Integer{"02 01 81"_octets, -127},
                    Integer{"02 01 80"_octets, -128}, Integer{"02 02 FF 7F"_octets, -129},
                    Integer{"02 02 00 FF"_octets, 255}, Integer{"02 02 01 00"_octets, 256},
                    Integer{"02 02 01 01"_octets, 257}, Integer{"02 02 02 02"_octets, 514},
                    Integer{"02 02 7F FF"_octets, 32767}, Integer{"02 03 00 80 00"_octets, 32768},
                    Integer{"02 03 00 80 01"_octets, 32769}, Integer{"02 02 80 01"_octets, -32767},
                    Integer{"02 02 80 00"_octets, -32768}, Integer{"02 03 FF 7F FF"_octets, -32769},
                    Integer{"02 03 00 FF FF"_octets, 65535}, Integer{"02 03 01 00 00"_octets, 65536},
                    Integer{"02 03 7F FF FF"_octets, 8388607}, Integer{"02 04 00 80 00 00"_octets, 8388608},
                    Integer{"02 04 00 80 00 01"_octets, 8388609}, Integer{"02 03 80 00 01"_octets, -8388607},
                    Integer{"02 03 80 00 00"_octets, -8388608}, Integer{"02 04 FF 7F FF FF"_octets, -8388609},
                    Integer{"02 04 7F FF FF FF"_octets, highest}, Integer{"02 04 80 00 00 00"_octets, lowest},
                    Integer{"02 04 80 00 00 01"_octets, -highest}));

TEST(ReadSignedInt, TakesMoreOctetsThanNeeded) {
    const Integer longer[] = {{"02 01 00"_octets, 0},          {"02 02 00 00"_octets, 0},
                              {"02 04 00 00 00 05"_octets, 5}, {"02 04 FF FF FF FE"_octets, -2},
                              {"02 81 01 05"_octets, 5},       {"02 84 00 00 00 02 02 02"_octets, 514},
                              {"02 81 00"_octets, 0},          {"1F 02 01 05"_octets, 5}};
    for (const Integer& integer : longer) {
        MemoryStream stream(integer.octets);
        std::int32_t value = 7;
        EXPECT_THAT(read_signed_int(&stream, lowest, highest, &value, 0), IsNull());
        EXPECT_EQ(value, integer.value);
        EXPECT_EQ(stream.unread(), 0u);
    }
}

TEST(ReadSignedInt, DropsFillersBeforeIt) {
    MemoryStream stream("19 19 02 01 05"_octets);
    std::int32_t value = 0;
    EXPECT_THAT(read_signed_int(&stream, 0, 65535, &value, 0), IsNull());
    EXPECT_EQ(value, 5);
}

struct BadInteger {
    const char* what;
    Octets octets;
    const char* text;
    std::uint64_t unread;
};

TEST(ReadSignedInt, RefusesBadElements) {
    const char* range = "data out of range in read_signed_int";
    const BadInteger bad[] = {
        {"a boolean", "01 01 05"_octets, "Wrong tag, expected BE_INTEGER", 2},
        {"an end of contents", "00 00"_octets, "Wrong tag, expected BE_INTEGER", 1},
        {"an integer of another class", "42 01 05"_octets, "Wrong tag, expected BE_INTEGER", 2},
        {"a constructed integer", "22 01 05"_octets, "Wrong tag, expected BE_INTEGER", 2},
        {"indefinite", "02 80 05 00 00"_octets, range, 3},
        {"five octets of content", "02 05 00 00 00 00 01"_octets, range, 5},
        {"announces 4 GiB", "02 84 FF FF FF FF"_octets, range, 0},
        {"five octets of length", "02 85 00 00 00 00 01 05"_octets, "data out of range in read_length", 6},
        {"the longest length of length", "02 FF 05"_octets, "data out of range in read_length", 1},
        {"one more than the highest", "02 03 01 00 00"_octets, range, 0},
        {"one less than the lowest", "02 01 FF"_octets, range, 0},
        {"the highest of all", "02 04 7F FF FF FF"_octets, range, 0},
    };
    for (const BadInteger& integer : bad) {
        MemoryStream stream(integer.octets);
        std::int32_t value = 7;
        EXPECT_THAT(read_signed_int(&stream, 0, 65535, &value, 0), StrEq(integer.text)) << integer.what;
        EXPECT_EQ(stream.unread(), integer.unread) << integer.what;
        EXPECT_EQ(value, 7) << integer.what;
    }
}

TEST(ReadSignedInt, RefusesAWrongTagHandedIn) {
    MemoryStream stream("01 05"_octets);
    std::int32_t value = 0;
    EXPECT_THAT(read_signed_int(&stream, 0, 65535, &value, 8), StrEq("Wrong tag, expected BE_INTEGER"));
    EXPECT_EQ(stream.unread(), 2u);
}

TEST(ReadSignedInt, TakesTheWholeRangeAndNothingBeside) {
    std::int32_t value = 0;
    MemoryStream inside("02 01 FE 02 01 03 02 00"_octets); // -2, 3, 0
    EXPECT_THAT(read_signed_int(&inside, -2, 3, &value, 0), IsNull());
    EXPECT_THAT(read_signed_int(&inside, -2, 3, &value, 0), IsNull());
    EXPECT_THAT(read_signed_int(&inside, -2, 3, &value, 0), IsNull());
    for (const char* octet : {"FD", "04"}) { // -3, 4
        MemoryStream outside("02 01"_octets + operator""_octets(octet, 2));
        EXPECT_THAT(read_signed_int(&outside, -2, 3, &value, 0),
                    StrEq("data out of range in read_signed_int"));
    }
}

TEST(ReadSignedInt, RefusesAnEmptyIntegerWhereZeroIsOutOfRange) {
    MemoryStream stream("02 00"_octets);
    std::int32_t value = 0;
    EXPECT_THAT(read_signed_int(&stream, 1, 9, &value, 0), StrEq("data out of range in read_signed_int"));
}

TEST(WriteSignedInt, WritesNothingThatIsOutOfRange) {
    for (const std::int32_t value : {-1, 65536, lowest, highest}) {
        MemoryStream stream;
        EXPECT_THAT(write_signed_int(&stream, 0, 65535, value),
                    StrEq("data out of range in write_signed_int"));
        EXPECT_EQ(stream.received, Octets());
        EXPECT_EQ(stream.writes, 0);
    }
}

TEST(WriteSignedInt, HandsOnTheStreamsFailure) {
    MemoryStream stream;
    stream.break_after(0, "no more room");
    EXPECT_THAT(write_signed_int(&stream, 0, 65535, 1), StrEq("no more room"));
}

} // namespace
