#include "protocol/values.h"

#include "support/outcome.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

struct Skipped {
    const char* what;
    Octets octets;
};

const std::vector<Skipped>& elements() {
    static const std::vector<Skipped> all = {
        {"an empty integer", "02 00"_octets},
        {"an integer", "02 01 07"_octets},
        {"a string with a long length", "04 82 00 02 41 42"_octets},
        {"a string of 127 octets", "04 7F"_octets + Octets(127, 'x')},
        {"a string of 128 octets", "04 81 80"_octets + Octets(128, 'x')},
        {"a string of 129 octets", "04 81 81"_octets + Octets(129, 'x')},
        {"a string of 1000 octets", "04 82 03 E8"_octets + Octets(1000, 'x')},
        {"a definite constructed element", "30 03 02 01 05"_octets},
        {"a definite element whose content is no element", "30 03 FF FF FF"_octets},
        {"an empty indefinite element", "61 80 00 00"_octets},
        {"an indefinite element with fields", "61 80 02 01 05 04 00 00 00"_octets},
        {"an indefinite primitive", "04 80 02 01 05 00 00"_octets},
        {"three levels", "61 80 A1 80 30 80 00 00 01 01 01 00 00 02 00 00 00"_octets},
        {"fillers inside", "61 80 19 02 00 19 19 00 00"_octets},
        {"an end of contents with a long length of zero", "61 80 00 81 00"_octets},
        {"an end of contents in the long form", "61 80 1F 00 00"_octets},
        {"a long identifier", "7F 81 00 80 5F 1F 01 41 00 00"_octets},
    };
    return all;
}

std::string skipped(const Octets& octets) {
    MemoryStream stream(octets);
    const char* problem = skip_value(&stream, 0);
    return problem != nullptr ? problem : "skipped";
}

std::string skipped_to_end(const Octets& octets) {
    MemoryStream stream(octets);
    const char* problem = skip_to_eol(&stream);
    return outcome(problem, "skipped", stream);
}

TEST(SkipValue, DropsOneElementOfAnyKind) {
    for (const Skipped& element : elements()) {
        MemoryStream stream(element.octets + "02 00"_octets);
        EXPECT_THAT(skip_value(&stream, 0), IsNull()) << element.what;
        EXPECT_EQ(stream.unread(), 2u) << element.what;
    }
}

TEST(SkipValue, DropsTheRestBehindAnIdentifier) {
    MemoryStream stream("80 02 01 05 00 00 55"_octets);
    EXPECT_THAT(skip_value(&stream, 11), IsNull());
    EXPECT_EQ(stream.unread(), 1u);
}

TEST(SkipValue, CutShortIsNoElement) {
    for (const Skipped& element : elements()) {
        SCOPED_TRACE(element.what);
        expect_no_beginning_is_enough(element.octets, skipped);
    }
}

TEST(SkipValue, RefusesBadElements) {
    const char* not_terminated = "List not terminated correctly in read_devnode_list";
    const char* length = "data out of range in read_length";
    const BadElement bad[] = {
        {"nothing to skip", "00 00"_octets, "skip_value encountered end of list"},
        {"nothing to skip behind a filler", "19 00 00"_octets, "skip_value encountered end of list"},
        {"five octets of length", "04 85 00 00 00 00 01 41"_octets, length},
        {"five octets of length inside", "61 80 04 85 00 00 00 00 01 41 00 00"_octets, length},
        {"an end with contents", "61 80 00 01 05"_octets, not_terminated},
        {"an indefinite end", "61 80 00 80 00 00"_octets, not_terminated},
        {"an end with a long length of one", "61 80 00 81 01 05"_octets, not_terminated},
        {"an inner end with contents", "61 80 A1 80 00 01 05 00 00"_octets, not_terminated},
        {"an end with five octets of length", "61 80 00 85 00 00 00 00 00"_octets, length},
    };
    for (const BadElement& element : bad)
        EXPECT_EQ(skipped(element.octets), element.outcome) << element.what;
}

TEST(SkipToEol, DropsElementsOfAnyKindUpToTheEnd) {
    EXPECT_EQ(skipped_to_end("00 00 00 00"_octets), "skipped, 2 left");
    for (const Skipped& element : elements()) {
        EXPECT_EQ(skipped_to_end(element.octets + element.octets + "00 00"_octets), "skipped")
            << element.what;
    }
    expect_no_beginning_is_enough("02 01 07 61 80 04 00 00 00 00 00"_octets, skipped_to_end);
}

TEST(SkipToEol, NamesItselfOnlyAtTheOuterEnd) {
    const char* outer = "List not terminated correctly in skip_to_eol";
    const char* inner = "List not terminated correctly in read_devnode_list";
    const BadElement bad[] = {
        {"an end with contents", "00 01 05"_octets, outer},
        {"an indefinite end", "00 80"_octets, outer},
        {"an end with a long length of one", "00 81 01"_octets, outer},
        {"an outer end with contents behind a field", "02 00 00 01"_octets, outer},
        {"an outer end with contents behind nesting", "61 80 A1 80 00 00 00 00 00 01"_octets, outer},
        {"an inner end with contents", "61 80 00 01 05 00 00"_octets, inner},
        {"an inner end with contents, two levels down", "61 80 A1 80 00 01 05 00 00 00 00"_octets, inner},
        {"an end with five octets of length", "00 85 00 00 00 00 00"_octets,
         "data out of range in read_length"},
    };
    for (const BadElement& element : bad)
        EXPECT_THAT(skipped_to_end(element.octets), testing::StartsWith(element.outcome)) << element.what;
}

constexpr std::uint64_t ten_million = 10000000;

TEST(Skipping, TenMillionOpenElementsNeedNoStack) {
    MemoryStream stream;
    stream.sends("30 80"_octets, ten_million);
    stream.sends("00 00"_octets, ten_million);
    EXPECT_THAT(skip_value(&stream, 0), IsNull());
    EXPECT_EQ(stream.unread(), 0u);
}

TEST(Skipping, TenMillionOpenElementsThatNobodyClosesEndWithThePeer) {
    MemoryStream stream;
    stream.sends("30 80"_octets, ten_million);
    EXPECT_THAT(skip_to_eol(&stream), StrEq("Peer closed connection unexpectedly"));
}

TEST(Skipping, TenMillionElementsInARowAreDropped) {
    MemoryStream stream;
    stream.sends("02 01 05"_octets, ten_million);
    stream.sends("00 00"_octets);
    EXPECT_THAT(skip_to_eol(&stream), IsNull());
}

TEST(Skipping, AnAnnounced128MegabytesIsReadAndDropped) {
    MemoryStream stream("04 84 08 00 00 00"_octets);
    stream.sends(Octets(64, 'x'), 0x08000000 / 64);
    stream.sends("02 00"_octets);
    EXPECT_THAT(skip_value(&stream, 0), IsNull());
    EXPECT_EQ(stream.unread(), 2u);
}

TEST(Skipping, AnAnnouncedFourGigabytesEndWithThePeer) {
    MemoryStream stream("04 84 FF FF FF FF"_octets);
    stream.sends("41"_octets, 1000000);
    EXPECT_THAT(skip_value(&stream, 0), StrEq("Peer closed connection unexpectedly"));
}

} // namespace
