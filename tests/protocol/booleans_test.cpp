#include "protocol/values.h"

#include "support/memory_stream.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

constexpr std::uint32_t boolean_tag = 8;

TEST(WriteBool, WritesFalseAsZeroAndTrueAsOne) {
    MemoryStream stream;
    EXPECT_THAT(write_bool(&stream, false), IsNull());
    EXPECT_EQ(stream.received, "01 01 00"_octets);
    EXPECT_THAT(write_bool(&stream, true), IsNull());
    EXPECT_EQ(stream.received, "01 01 00 01 01 01"_octets);
    EXPECT_EQ(stream.writes, 2);
}

TEST(WriteBool, HandsOnTheStreamsFailure) {
    MemoryStream stream;
    stream.break_after(0, "no more room");
    EXPECT_THAT(write_bool(&stream, true), StrEq("no more room"));
}

TEST(ReadBool, TakesEveryOctetButZeroForTrue) {
    for (unsigned octet = 0; octet < 256; ++octet) {
        MemoryStream stream("01 01"_octets + Octets{static_cast<std::uint8_t>(octet)});
        bool value = octet == 0;
        EXPECT_THAT(read_bool(&stream, &value, 0), IsNull());
        EXPECT_EQ(value, octet != 0) << octet;
    }
}

TEST(ReadBool, ReadsBehindItsIdentifier) {
    MemoryStream stream("01 01"_octets);
    bool value = false;
    EXPECT_THAT(read_bool(&stream, &value, boolean_tag), IsNull());
    EXPECT_TRUE(value);
}

TEST(ReadBool, TakesLongLengths) {
    for (const Octets& octets : {"01 81 01 01"_octets, "19 01 84 00 00 00 01 01"_octets}) {
        MemoryStream stream(octets);
        bool value = false;
        EXPECT_THAT(read_bool(&stream, &value, 0), IsNull());
        EXPECT_TRUE(value);
        EXPECT_EQ(stream.unread(), 0u);
    }
}

TEST(ReadBool, CutShortIsNoBoolean) {
    for (const Octets& octets : {""_octets, "01"_octets, "01 01"_octets, "01 81"_octets, "01 82 00"_octets}) {
        MemoryStream stream(octets);
        bool value = false;
        EXPECT_THAT(read_bool(&stream, &value, 0), StrEq("Peer closed connection unexpectedly"));
    }
}

struct BadBoolean {
    const char* what;
    Octets octets;
    const char* text;
    std::uint64_t unread;
};

TEST(ReadBool, RefusesBadElements) {
    const char* range = "data out of range in read_bool";
    const BadBoolean bad[] = {
        {"an integer", "02 01 01"_octets, "Wrong tag, expected BE_BOOLEAN", 2},
        {"an end of contents", "00 00"_octets, "Wrong tag, expected BE_BOOLEAN", 1},
        {"a boolean of another class", "81 01 01"_octets, "Wrong tag, expected BE_BOOLEAN", 2},
        {"no content", "01 00"_octets, range, 0},
        {"two octets of content", "01 02 00 01"_octets, range, 2},
        {"indefinite, or no length octets", "01 80 01"_octets, range, 1},
        {"long form of no content", "01 81 00"_octets, range, 0},
        {"length with the right low octet", "01 82 01 01 01"_octets, range, 1},
        {"announces 4 GiB", "01 84 FF FF FF FF"_octets, range, 0},
        {"five octets of length", "01 85 00 00 00 00 01 01"_octets, "data out of range in read_length", 6},
    };
    for (const BadBoolean& boolean : bad) {
        MemoryStream stream(boolean.octets);
        bool value = false;
        EXPECT_THAT(read_bool(&stream, &value, 0), StrEq(boolean.text)) << boolean.what;
        EXPECT_EQ(stream.unread(), boolean.unread) << boolean.what;
        EXPECT_FALSE(value) << boolean.what;
    }
}

TEST(ReadBool, RefusesAWrongTagHandedIn) {
    MemoryStream stream("01 01"_octets);
    bool value = false;
    EXPECT_THAT(read_bool(&stream, &value, 16), StrEq("Wrong tag, expected BE_BOOLEAN"));
}

} // namespace
