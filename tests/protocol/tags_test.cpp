#include "protocol/heads.h"

#include "support/memory_stream.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

struct Identifier {
    Octets octets;
    std::uint32_t tag;
};

std::ostream& operator<<(std::ostream& out, const Identifier& identifier) { return out << identifier.tag; }

class Identifiers : public testing::TestWithParam<Identifier> {};

TEST_P(Identifiers, AreWrittenInTheShortestForm) {
    MemoryStream stream;
    EXPECT_THAT(write_tag(&stream, GetParam().tag), IsNull());
    EXPECT_EQ(stream.received, GetParam().octets);
    EXPECT_EQ(stream.writes, 1);
}

TEST_P(Identifiers, AreRead) {
    MemoryStream stream(GetParam().octets + "55"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, GetParam().tag);
    EXPECT_EQ(stream.unread(), 1u);
}

TEST_P(Identifiers, CutShortAreNoIdentifiers) {
    for (std::size_t size = 0; size < GetParam().octets.size(); ++size) {
        MemoryStream stream(first_octets(GetParam().octets, size));
        std::uint32_t tag = 0;
        EXPECT_THAT(read_tag(&stream, &tag), StrEq("Peer closed connection unexpectedly")) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(Known, Identifiers,
                         testing::Values(Identifier{"00"_octets, 0},    // end of contents
                                         Identifier{"01"_octets, 8},    // BOOLEAN
                                         Identifier{"02"_octets, 16},   // INTEGER
                                         Identifier{"04"_octets, 32},   // STRING
                                         Identifier{"60"_octets, 3},    // client_wants
                                         Identifier{"61"_octets, 11},   // server_offers
                                         Identifier{"62"_octets, 19},   // closing element
                                         Identifier{"63"_octets, 27},   // negotiate_nack
                                         Identifier{"A1"_octets, 13})); // private keys

INSTANTIATE_TEST_SUITE_P(
    Borders, Identifiers,
    testing::Values(Identifier{"18"_octets, 192}, Identifier{"1A"_octets, 208}, Identifier{"1E"_octets, 240},
                    Identifier{"FE"_octets, 247}, Identifier{"1F 1F"_octets, 248},
                    Identifier{"FF 1F"_octets, 255}, Identifier{"1F 20"_octets, 256},
                    Identifier{"1F 7F"_octets, 1016}, Identifier{"FF 7F"_octets, 1023},
                    Identifier{"1F 81 00"_octets, 1024}, Identifier{"FF FF 7F"_octets, 131071},
                    Identifier{"1F 81 80 00"_octets, 131072}, Identifier{"FF FF FF 7F"_octets, 16777215},
                    Identifier{"1F 81 80 80 00"_octets, 16777216},
                    Identifier{"FF FF FF FF 7F"_octets, 2147483647u},
                    Identifier{"1F 81 80 80 80 00"_octets, 2147483648u},
                    Identifier{"FF 81 FF FF FF 7F"_octets, 4294967295u}));

TEST(ReadTag, ReadsEveryOneOctetIdentifierButTheFiller) {
    for (unsigned octet = 0; octet < 256; ++octet) {
        if ((octet & 0x1F) == 0x1F || octet == 0x19)
            continue;
        MemoryStream stream(Octets{static_cast<std::uint8_t>(octet)});
        std::uint32_t tag = 0;
        EXPECT_THAT(read_tag(&stream, &tag), IsNull());
        EXPECT_EQ(tag, octet % 32 * 8 + octet / 32) << octet;
    }
}

TEST(ReadTag, DropsFillers) {
    MemoryStream stream("19 19 19 02"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 16u);
}

TEST(ReadTag, DropsFillersBeforeALongForm) {
    MemoryStream stream("19 1F 20"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 256u);
}

TEST(ReadTag, TakesOnlyTheShortFormForAFiller) {
    MemoryStream stream("1F 19 02"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 200u);
    EXPECT_EQ(stream.unread(), 1u);
}

TEST(ReadTag, TakesOtherClassesWithTheFillersNumberForTags) {
    MemoryStream stream("39 59 99 D9"_octets);
    for (const std::uint32_t expected : {201u, 202u, 204u, 206u}) {
        std::uint32_t tag = 0;
        EXPECT_THAT(read_tag(&stream, &tag), IsNull());
        EXPECT_EQ(tag, expected);
    }
}

TEST(ReadTag, DropsAMillionFillers) {
    MemoryStream stream;
    stream.sends("19"_octets, 1000000);
    stream.sends("04"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 32u);
}

TEST(ReadTag, FailsAtTheEndOfFillers) {
    MemoryStream stream("19 19"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), StrEq("Peer closed connection unexpectedly"));
}

TEST(ReadTag, AcceptsANumberWithLeadingZeroGroups) {
    MemoryStream stream("1F 80 80 80 80 80 80 1F"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 248u);
}

TEST(ReadTag, AcceptsASmallNumberInTheLongForm) {
    MemoryStream stream("1F 02"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 16u);
}

TEST(ReadTag, LosesTheHighBitsOfANumberThatIsTooLarge) {
    MemoryStream stream("1F FF FF FF FF FF FF FF FF 82 03"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    // Groups ... 1111111 0000010 0000011: of the number 29 bits are left, and they are the tag's high bits.
    EXPECT_EQ(tag, 0xFFFE0818u);
}

TEST(ReadTag, SurvivesALongFormOfAMillionOctets) {
    MemoryStream stream("5F"_octets);
    stream.sends("80"_octets, 1000000);
    stream.sends("01"_octets);
    std::uint32_t tag = 0;
    EXPECT_THAT(read_tag(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 10u);
}

TEST(ReadTagIfNeeded, ReadsOnlyForTagZero) {
    MemoryStream stream("02 04"_octets);
    std::uint32_t tag = 8;
    EXPECT_THAT(read_tag_if_needed(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 8u);
    EXPECT_EQ(stream.unread(), 2u);
    tag = 0;
    EXPECT_THAT(read_tag_if_needed(&stream, &tag), IsNull());
    EXPECT_EQ(tag, 16u);
}

TEST(WriteTag, WritesTheFillersValueAsTheFiller) {
    MemoryStream stream;
    EXPECT_THAT(write_tag(&stream, 200), IsNull());
    EXPECT_EQ(stream.received, "19"_octets);
}

TEST(WriteTag, HandsOnTheStreamsFailure) {
    for (const std::uint32_t tag : {16u, 248u}) {
        MemoryStream stream;
        stream.break_after(0, "no more room");
        EXPECT_THAT(write_tag(&stream, tag), StrEq("no more room"));
    }
}

} // namespace
