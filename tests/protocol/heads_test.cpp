#include "protocol/heads.h"

#include "support/outcome.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

/// Octets that are the shortest form of a tag or a length.
struct Shortest {
    Octets octets;
    std::uint32_t value;
};

std::string tag_from(MemoryStream&& stream) {
    std::uint32_t tag = 0;
    const char* problem = read_tag(&stream, &tag);
    return outcome(problem, std::to_string(tag), stream);
}

std::string tag_of(const Octets& octets) { return tag_from(MemoryStream(octets)); }

TEST(Tags, AreWrittenInTheShortestFormAndRead) {
    const Shortest tags[] = {{"00"_octets, 0},  // end of contents
                             {"01"_octets, 8},  // BOOLEAN
                             {"02"_octets, 16}, // INTEGER
                             {"04"_octets, 32}, // STRING
                             {"60"_octets, 3},  // client_wants
                             {"61"_octets, 11}, // server_offers
                             {"62"_octets, 19}, // closing element
                             {"63"_octets, 27}, // negotiate_nack
                             {"A1"_octets, 13}, // private keys
                             {"18"_octets, 192},
                             {"1A"_octets, 208},
                             {"1E"_octets, 240},
                             {"FE"_octets, 247},
                             {"1F 1F"_octets, 248},
                             {"FF 1F"_octets, 255},
                             {"1F 20"_octets, 256},
                             {"1F 7F"_octets, 1016},
                             {"FF 7F"_octets, 1023},
                             {"1F 81 00"_octets, 1024},
                             {"FF FF 7F"_octets, 131071},
                             {"1F 81 80 00"_octets, 131072},
                             {"FF FF FF 7F"_octets, 16777215},
                             {"1F 81 80 80 00"_octets, 16777216},
                             {"FF FF FF FF 7F"_octets, 2147483647u},
                             {"1F 81 80 80 80 00"_octets, 2147483648u},
                             {"FF 81 FF FF FF 7F"_octets, 4294967295u}};
    for (const Shortest& each : tags) {
        SCOPED_TRACE(each.value);
        MemoryStream stream;
        EXPECT_THAT(write_tag(&stream, each.value), IsNull());
        EXPECT_EQ(stream.received, each.octets);
        EXPECT_EQ(stream.writes, 1);
        EXPECT_EQ(tag_of(each.octets + "55"_octets), std::to_string(each.value) + ", 1 left");
        expect_no_beginning_is_enough(each.octets, tag_of);
    }
}

TEST(ReadTag, ReadsEveryOneOctetIdentifierButTheFiller) {
    for (unsigned octet = 0; octet < 256; ++octet) {
        const std::string tag = std::to_string(octet % 32 * 8 + octet / 32);
        if ((octet & 0x1F) != 0x1F && octet != 0x19) {
            EXPECT_EQ(tag_of({static_cast<std::uint8_t>(octet)}), tag);
        }
    }
}

TEST(ReadTag, DropsFillers) {
    EXPECT_EQ(tag_of("19 19 19 02"_octets), "16");
    EXPECT_EQ(tag_of("19 1F 20"_octets), "256"); // before a long form
    EXPECT_EQ(tag_of("19 19"_octets), "Peer closed connection unexpectedly");
    MemoryStream many;
    many.sends("19"_octets, 1000000);
    many.sends("04"_octets);
    EXPECT_EQ(tag_from(std::move(many)), "32");
}

TEST(ReadTag, TakesOnlyTheShortFormOfTheFillersClassForAFiller) {
    EXPECT_EQ(tag_of("1F 19 02"_octets), "200, 1 left");
    EXPECT_EQ(tag_of("39"_octets), "201");
    EXPECT_EQ(tag_of("59"_octets), "202");
    EXPECT_EQ(tag_of("99"_octets), "204");
    EXPECT_EQ(tag_of("D9"_octets), "206");
}

TEST(ReadTag, AcceptsLongFormsThatAreLongerThanNeeded) {
    EXPECT_EQ(tag_of("1F 80 80 80 80 80 80 1F"_octets), "248");
    EXPECT_EQ(tag_of("1F 02"_octets), "16");
    MemoryStream many("5F"_octets);
    many.sends("80"_octets, 1000000);
    many.sends("01"_octets);
    EXPECT_EQ(tag_from(std::move(many)), "10");
}

TEST(ReadTag, LosesTheHighBitsOfANumberThatIsTooLarge) {
    // Groups ... 1111111 0000010 0000011: of the number 29 bits are left, and they are the tag's high bits.
    EXPECT_EQ(tag_of("1F FF FF FF FF FF FF FF FF 82 03"_octets), "4294838296"); // 0xFFFE0818
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

std::string length_of(const Octets& octets) {
    MemoryStream stream(octets);
    std::uint32_t length = 7;
    bool indefinite = false;
    const char* problem = read_length(&stream, &length, &indefinite);
    return outcome(problem, (indefinite ? "indefinite " : "") + std::to_string(length), stream);
}

TEST(Lengths, AreWrittenInTheShortestFormAndRead) {
    const Shortest lengths[] = {{"00"_octets, 0},
                                {"01"_octets, 1},
                                {"7F"_octets, 127},
                                {"81 80"_octets, 128},
                                {"81 C8"_octets, 200},
                                {"81 FF"_octets, 255},
                                {"82 01 00"_octets, 256},
                                {"82 01 01"_octets, 257},
                                {"82 7F FF"_octets, 32767},
                                {"82 80 00"_octets, 32768},
                                {"82 FF FF"_octets, 65535},
                                {"83 01 00 00"_octets, 65536},
                                {"83 FF FF FF"_octets, 16777215},
                                {"84 01 00 00 00"_octets, 16777216},
                                {"84 7F FF FF FF"_octets, 2147483647u},
                                {"84 80 00 00 00"_octets, 2147483648u},
                                {"84 FF FF FF FF"_octets, 4294967295u}};
    for (const Shortest& each : lengths) {
        SCOPED_TRACE(each.value);
        MemoryStream stream;
        EXPECT_THAT(write_length(&stream, each.value), IsNull());
        EXPECT_EQ(stream.received, each.octets);
        EXPECT_EQ(stream.writes, 1);
        EXPECT_EQ(length_of(each.octets + "55"_octets), std::to_string(each.value) + ", 1 left");
        expect_no_beginning_is_enough(each.octets, length_of);
    }
}

TEST(ReadLength, TakesLongFormsThatAreLongerThanNeeded) {
    for (const Octets& octets :
         {"81 05"_octets, "82 00 05"_octets, "83 00 00 05"_octets, "84 00 00 00 05"_octets})
        EXPECT_EQ(length_of(octets), "5");
    EXPECT_EQ(length_of("81 00"_octets), "0");
    EXPECT_EQ(length_of("84 00 00 00 00"_octets), "0");
}

TEST(ReadLength, KnowsTheIndefiniteForm) { EXPECT_EQ(length_of("80 05"_octets), "indefinite 0, 1 left"); }

TEST(ReadLength, RefusesMoreThanFourOctetsUnread) {
    for (unsigned first = 0x85; first <= 0xFF; ++first) {
        EXPECT_EQ(length_of(Octets{static_cast<std::uint8_t>(first)} + "00 00 00 00 01"_octets),
                  "data out of range in read_length, 5 left");
    }
}

TEST(WritingHeads, WritesOneOctetForIndefiniteAndTwoForTheEnd) {
    MemoryStream stream;
    EXPECT_THAT(write_indefinite(&stream), IsNull());
    EXPECT_EQ(stream.received, "80"_octets);
    EXPECT_THAT(write_end_of_contents(&stream), IsNull());
    EXPECT_EQ(stream.received, "80 00 00"_octets);
}

TEST(WritingHeads, HandsOnTheStreamsFailure) {
    MemoryStream stream;
    stream.break_after(0, "no more room");
    EXPECT_THAT(write_tag(&stream, 16), StrEq("no more room"));
    EXPECT_THAT(write_tag(&stream, 248), StrEq("no more room"));
    EXPECT_THAT(write_length(&stream, 5), StrEq("no more room"));
    EXPECT_THAT(write_indefinite(&stream), StrEq("no more room"));
    EXPECT_THAT(write_end_of_contents(&stream), StrEq("no more room"));
}

} // namespace
