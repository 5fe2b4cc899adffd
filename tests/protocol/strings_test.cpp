#include "protocol/values.h"

#include "net/memory.h"
#include "support/memory_stream.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>

namespace {

using testing::IsNull;
using testing::StrEq;

struct Free {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Free>;

struct Reading {
    const char* problem;
    Text text;
};

Reading read(MemoryStream& stream, std::uint32_t max, std::uint32_t tag = 0) {
    char* text = nullptr;
    const char* problem = read_string(&stream, max, &text, tag);
    return {problem, Text(text)};
}

TEST(WriteString, WritesOctetsOfText) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 256, "web1"), IsNull());
    EXPECT_EQ(stream.received, "04 04 77 65 62 31"_octets);
}

TEST(WriteString, WritesAnAbsentTextAsAnEmptyOne) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 256, nullptr), IsNull());
    EXPECT_THAT(write_string(&stream, 0, ""), IsNull());
    EXPECT_EQ(stream.received, "04 00 04 00"_octets);
}

TEST(WriteString, WritesLongLengths) {
    const std::pair<std::size_t, Octets> heads[] = {
        {125, "04 7D"_octets},           {126, "04 7E"_octets},        {127, "04 7F"_octets},
        {128, "04 81 80"_octets},        {129, "04 81 81"_octets},     {255, "04 81 FF"_octets},
        {256, "04 82 01 00"_octets},     {1024, "04 82 04 00"_octets}, {65535, "04 82 FF FF"_octets},
        {65536, "04 83 01 00 00"_octets}};
    for (const auto& [length, head] : heads) {
        MemoryStream stream;
        EXPECT_THAT(write_string(&stream, 70000, std::string(length, 'x').c_str()), IsNull());
        EXPECT_EQ(stream.received, head + Octets(length, 'x')) << length;
    }
}

TEST(WriteString, WritesUpToTheMaximum) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 4, "web1"), IsNull());
    EXPECT_EQ(stream.received, "04 04 77 65 62 31"_octets);
}

TEST(WriteString, HasSentTheIdentifierOfATextThatIsTooLong) {
    MemoryStream stream;
    EXPECT_THAT(write_string(&stream, 3, "web1"), StrEq("data out of range in write_string"));
    EXPECT_EQ(stream.received, "04"_octets);
}

TEST(WriteString, HandsOnTheStreamsFailure) {
    const std::string long_text(200, 'x'); // which is sent apart from its head
    for (const std::size_t sent : {0, 1, 3}) {
        MemoryStream stream;
        stream.break_after(sent, "no more room");
        EXPECT_THAT(write_string(&stream, 200, long_text.c_str()), StrEq("no more room"));
        EXPECT_EQ(stream.received.size(), sent);
    }
    for (const std::uint32_t max : {3u, 4u}) {
        MemoryStream stream;
        stream.break_after(0, "no more room");
        EXPECT_THAT(write_string(&stream, max, "web1"), StrEq("no more room"));
    }
}

TEST(ReadString, ReadsOctetsOfText) {
    MemoryStream stream("04 04 77 65 62 31 55"_octets);
    const Reading reading = read(stream, 256);
    EXPECT_THAT(reading.problem, IsNull());
    EXPECT_THAT(reading.text.get(), StrEq("web1"));
    EXPECT_EQ(stream.unread(), 1u);
}

TEST(ReadString, ReadsBehindItsIdentifier) {
    MemoryStream stream("02 6E 6F"_octets);
    EXPECT_THAT(read(stream, 256, 32).text.get(), StrEq("no"));
}

TEST(ReadString, ReadsAnEmptyText) {
    for (const Octets& octets : {"04 00"_octets, "04 81 00"_octets, "19 04 84 00 00 00 00"_octets}) {
        MemoryStream stream(octets);
        EXPECT_THAT(read(stream, 0).text.get(), StrEq(""));
    }
}

TEST(ReadString, KeepsEveryOctet) {
    MemoryStream stream("04 05 41 00 FF 0A 42"_octets);
    const Reading reading = read(stream, 256);
    ASSERT_THAT(reading.text.get(), testing::NotNull());
    EXPECT_EQ(std::string(reading.text.get(), 6), std::string("A\0\xFF\nB\0", 6));
}

TEST(ReadString, TakesExactlyTheMaximum) {
    const std::pair<std::uint32_t, Octets> heads[] = {
        {127, "04 7F"_octets},       {128, "04 81 80"_octets},     {255, "04 81 FF"_octets},
        {256, "04 82 01 00"_octets}, {1024, "04 82 04 00"_octets}, {65536, "04 83 01 00 00"_octets}};
    for (const auto& [length, head] : heads) {
        MemoryStream stream(head + Octets(length, 'x'));
        const Reading reading = read(stream, length);
        EXPECT_THAT(reading.problem, IsNull());
        EXPECT_THAT(reading.text.get(), StrEq(std::string(length, 'x')));
    }
}

TEST(ReadString, RefusesOneMoreThanTheMaximum) {
    for (const std::uint32_t max : {3u, 126u, 127u, 128u, 254u, 255u, 256u}) {
        MemoryStream stream(
            "04 82"_octets +
            Octets{static_cast<std::uint8_t>((max + 1) / 256), static_cast<std::uint8_t>((max + 1) % 256)} +
            Octets(max + 1, 'x'));
        const Reading reading = read(stream, max);
        EXPECT_THAT(reading.problem, StrEq("data out of range in read_string"));
        EXPECT_THAT(reading.text.get(), IsNull());
        EXPECT_EQ(stream.unread(), max + 1);
    }
}

struct BadString {
    const char* what;
    Octets octets;
    const char* text;
    std::uint64_t unread;
};

TEST(ReadString, RefusesBadElements) {
    const char* range = "data out of range in read_string";
    const BadString bad[] = {
        {"an integer", "02 01 41"_octets, "Wrong tag, expected BE_STRING", 2},
        {"an end of contents", "00 00"_octets, "Wrong tag, expected BE_STRING", 1},
        {"a constructed string", "24 80 00 00"_octets, "Wrong tag, expected BE_STRING", 3},
        {"indefinite", "04 80 41 00 00"_octets, range, 3},
        {"announces 2 GiB", "04 84 80 00 00 00 41"_octets, range, 1},
        {"announces 4 GiB", "04 84 FF FF FF FF 41"_octets, range, 1},
        {"five octets of length", "04 85 00 00 00 00 01 41"_octets, "data out of range in read_length", 6},
        {"the longest length of length", "04 FF 41"_octets, "data out of range in read_length", 1},
    };
    for (const BadString& string : bad) {
        MemoryStream stream(string.octets);
        const Reading reading = read(stream, 1024);
        EXPECT_THAT(reading.problem, StrEq(string.text)) << string.what;
        EXPECT_THAT(reading.text.get(), IsNull()) << string.what;
        EXPECT_EQ(stream.unread(), string.unread) << string.what;
    }
}

TEST(ReadString, CutShortIsNoString) {
    const Octets whole = "04 82 00 04 77 65 62 31"_octets;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        MemoryStream stream(first_octets(whole, size));
        const Reading reading = read(stream, 1024);
        EXPECT_THAT(reading.problem, StrEq("Peer closed connection unexpectedly")) << size;
        EXPECT_THAT(reading.text.get(), IsNull()) << size;
    }
}

TEST(ReadString, SaysThatThereIsNoMemoryBeforeItReadsTheContent) {
    net::resize_memory = [](void*, std::size_t size) -> void* {
        EXPECT_EQ(size, 5u);
        return nullptr;
    };
    MemoryStream stream("04 04 77 65 62 31"_octets);
    const Reading reading = read(stream, 1024);
    net::resize_memory = std::realloc;
    EXPECT_THAT(reading.problem, StrEq("Unable to allocate data in read_string"));
    EXPECT_THAT(reading.text.get(), IsNull());
    EXPECT_EQ(stream.unread(), 4u);
}

TEST(ReadString, AsksForNoMemoryForATextThatIsTooLong) {
    static int asked;
    asked = 0;
    net::resize_memory = [](void*, std::size_t) -> void* {
        ++asked;
        return nullptr;
    };
    MemoryStream stream("04 84 FF FF FF FF"_octets);
    EXPECT_THAT(read(stream, 1024).problem, StrEq("data out of range in read_string"));
    net::resize_memory = std::realloc;
    EXPECT_EQ(asked, 0);
}

TEST(ReadString, RefusesAWrongTagHandedIn) {
    MemoryStream stream("01 41"_octets);
    EXPECT_THAT(read(stream, 1024, 16).problem, StrEq("Wrong tag, expected BE_STRING"));
}

} // namespace
