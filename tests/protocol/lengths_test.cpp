#include "protocol/heads.h"

#include "support/memory_stream.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

struct Length {
    Octets octets;
    std::uint32_t value;
};

std::ostream& operator<<(std::ostream& out, const Length& length) { return out << length.value; }

class Lengths : public testing::TestWithParam<Length> {};

TEST_P(Lengths, AreWrittenInTheShortestForm) {
    MemoryStream stream;
    EXPECT_THAT(write_length(&stream, GetParam().value), IsNull());
    EXPECT_EQ(stream.received, GetParam().octets);
    EXPECT_EQ(stream.writes, 1);
}

TEST_P(Lengths, AreRead) {
    MemoryStream stream(GetParam().octets + "55"_octets);
    std::uint32_t length = 7;
    bool indefinite = true;
    EXPECT_THAT(read_length(&stream, &length, &indefinite), IsNull());
    EXPECT_EQ(length, GetParam().value);
    EXPECT_FALSE(indefinite);
    EXPECT_EQ(stream.unread(), 1u);
}

TEST_P(Lengths, CutShortAreNoLengths) {
    for (std::size_t size = 0; size < GetParam().octets.size(); ++size) {
        MemoryStream stream(first_octets(GetParam().octets, size));
        std::uint32_t length = 0;
        bool indefinite = false;
        EXPECT_THAT(read_length(&stream, &length, &indefinite), StrEq("Peer closed connection unexpectedly"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Borders, Lengths,
    testing::Values(Length{"00"_octets, 0}, Length{"01"_octets, 1}, Length{"7F"_octets, 127},
                    Length{"81 80"_octets, 128}, Length{"81 C8"_octets, 200}, Length{"81 FF"_octets, 255},
                    Length{"82 01 00"_octets, 256}, Length{"82 01 01"_octets, 257},
                    Length{"82 7F FF"_octets, 32767}, Length{"82 80 00"_octets, 32768},
                    Length{"82 FF FF"_octets, 65535}, Length{"83 01 00 00"_octets, 65536},
                    Length{"83 FF FF FF"_octets, 16777215}, Length{"84 01 00 00 00"_octets, 16777216},
                    Length{"84 7F FF FF FF"_octets, 2147483647u},
                    Length{"84 80 00 00 00"_octets, 2147483648u},
                    Length{"84 FF FF FF FF"_octets, 4294967295u}));

TEST(ReadLength, TakesLongFormsThatAreLongerThanNeeded) {
    const Length longer[] = {{"81 00"_octets, 0},          {"81 05"_octets, 5},
                             {"82 00 05"_octets, 5},       {"83 00 00 05"_octets, 5},
                             {"84 00 00 00 05"_octets, 5}, {"84 00 00 00 00"_octets, 0}};
    for (const Length& length : longer) {
        MemoryStream stream(length.octets);
        std::uint32_t value = 7;
        bool indefinite = true;
        EXPECT_THAT(read_length(&stream, &value, &indefinite), IsNull());
        EXPECT_EQ(value, length.value);
        EXPECT_FALSE(indefinite);
        EXPECT_EQ(stream.unread(), 0u);
    }
}

TEST(ReadLength, KnowsTheIndefiniteForm) {
    MemoryStream stream("80 05"_octets);
    std::uint32_t length = 7;
    bool indefinite = false;
    EXPECT_THAT(read_length(&stream, &length, &indefinite), IsNull());
    EXPECT_EQ(length, 0u);
    EXPECT_TRUE(indefinite);
    EXPECT_EQ(stream.unread(), 1u);
}

TEST(ReadLength, RefusesMoreThanFourOctetsUnread) {
    for (unsigned first = 0x85; first <= 0xFF; ++first) {
        MemoryStream stream(Octets{static_cast<std::uint8_t>(first)} + "00 00 00 00 01"_octets);
        std::uint32_t length = 0;
        bool indefinite = false;
        EXPECT_THAT(read_length(&stream, &length, &indefinite), StrEq("data out of range in read_length"));
        EXPECT_EQ(stream.unread(), 5u) << first;
    }
}

TEST(WriteIndefinite, WritesOneOctet) {
    MemoryStream stream;
    EXPECT_THAT(write_indefinite(&stream), IsNull());
    EXPECT_EQ(stream.received, "80"_octets);
}

TEST(WriteEndOfContents, WritesTwoOctets) {
    MemoryStream stream;
    EXPECT_THAT(write_end_of_contents(&stream), IsNull());
    EXPECT_EQ(stream.received, "00 00"_octets);
}

TEST(WritingLengths, HandsOnTheStreamsFailure) {
    MemoryStream stream;
    stream.break_after(0, "no more room");
    EXPECT_THAT(write_length(&stream, 5), StrEq("no more room"));
    EXPECT_THAT(write_indefinite(&stream), StrEq("no more room"));
    EXPECT_THAT(write_end_of_contents(&stream), StrEq("no more room"));
}

} // namespace
