#include "base/exceptions.h"
#include "base/text.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <limits>

namespace {

using testing::Optional;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

std::string parse_failure(const std::string& text) {
    try {
        return "parsed as " + std::to_string(parse_int(text));
    } catch (const error::EParseError& failure) {
        EXPECT_EQ(failure.message, "");
        return failure.description();
    }
}

TEST(ParseInt, ReadsDecimalNumbers) {
    EXPECT_EQ(parse_int("0"), 0);
    EXPECT_EQ(parse_int("-7"), -7);
    EXPECT_EQ(parse_int("+7"), 7);
    EXPECT_EQ(parse_int("0012"), 12);
    EXPECT_EQ(parse_int("-0"), 0);
}

TEST(ParseInt, SkipsLeadingWhiteSpaceAsStrtolDoes) {
    EXPECT_EQ(parse_int(" \t\n\v\f\r-12"), -12);
    EXPECT_EQ(parse_failure("12 "), "Error parsing: \"12 \"");
    EXPECT_EQ(parse_failure("- 1"), "Error parsing: \"- 1\"");
}

TEST(ParseInt, TakesTheEmptyTextForZero) { EXPECT_EQ(parse_int(""), 0); }

TEST(ParseInt, ThrowsWhenAnythingIsLeft) {
    EXPECT_EQ(parse_failure("12a"), "Error parsing: \"12a\"");
    EXPECT_EQ(parse_failure("a"), "Error parsing: \"a\"");
    EXPECT_EQ(parse_failure(" "), "Error parsing: \" \"");
    EXPECT_EQ(parse_failure("+"), "Error parsing: \"+\"");
    EXPECT_EQ(parse_failure("--1"), "Error parsing: \"--1\"");
    EXPECT_EQ(parse_failure("0x10"), "Error parsing: \"0x10\"");
    EXPECT_EQ(parse_failure("1.5"), "Error parsing: \"1.5\"");
    EXPECT_EQ(parse_failure("1\t"), "Error parsing: \"1\\t\"");
    EXPECT_EQ(parse_failure("\xB2"), "Error parsing: \"\xB2\"");
}

TEST(ParseInt, CountsWhatStandsBehindAZeroByteAsLeft) {
    EXPECT_EQ(parse_failure(std::string("12\0a", 4)), "Error parsing: \"12\\000a\"");
    EXPECT_EQ(parse_failure(std::string("12\0", 3)), "Error parsing: \"12\\000\"");
    EXPECT_EQ(parse_failure(std::string("\0", 1)), "Error parsing: \"\\000\"");
}

TEST(ParseInt, StopsAtThe32BitLimits) {
    EXPECT_EQ(parse_int("2147483647"), highest);
    EXPECT_EQ(parse_int("2147483648"), highest);
    EXPECT_EQ(parse_int("4294967296"), highest);
    EXPECT_EQ(parse_int("99999999999999999999999"), highest);
    EXPECT_EQ(parse_int("-2147483648"), lowest);
    EXPECT_EQ(parse_int("-2147483649"), lowest);
    EXPECT_EQ(parse_int("-99999999999999999999999"), lowest);
}

TEST(ScanInt, ReadsTheThreeBases) {
    EXPECT_THAT(scan_int("17"), Optional(17));
    EXPECT_THAT(scan_int("017"), Optional(15));
    EXPECT_THAT(scan_int("0x17"), Optional(23));
    EXPECT_THAT(scan_int("0XaF"), Optional(175));
    EXPECT_THAT(scan_int("-0x10"), Optional(-16));
    EXPECT_THAT(scan_int("+010"), Optional(8));
    EXPECT_THAT(scan_int("0"), Optional(0));
    EXPECT_THAT(scan_int("-0"), Optional(0));
}

TEST(ScanInt, SkipsWhiteSpaceAndStopsAtTheFirstMisfit) {
    EXPECT_THAT(scan_int(" \t\n\v\f\r12 rest"), Optional(12));
    EXPECT_THAT(scan_int("12a"), Optional(12));
    EXPECT_THAT(scan_int("0x1G"), Optional(1));
    EXPECT_THAT(scan_int("089"), Optional(0));
    EXPECT_THAT(scan_int("1-2"), Optional(1));
    EXPECT_THAT(scan_int(std::string("1\0002", 3)), Optional(1));
}

TEST(ScanInt, TakesThePrefixAloneForZero) {
    EXPECT_THAT(scan_int("0x"), Optional(0));
    EXPECT_THAT(scan_int("0xg"), Optional(0));
    EXPECT_THAT(scan_int("-0X"), Optional(0));
}

TEST(ScanInt, ConvertsNothingWithoutADigit) {
    for (const char* const text : {"", " ", "-", "+", "a", "x10", "- 1", "+-1", ".5"})
        EXPECT_EQ(scan_int(text), std::nullopt) << text;
    EXPECT_EQ(scan_int(std::string("\0001", 2)), std::nullopt);
}

TEST(ScanInt, StopsAtThe32BitLimits) {
    EXPECT_THAT(scan_int("2147483647"), Optional(highest));
    EXPECT_THAT(scan_int("2147483648"), Optional(highest));
    EXPECT_THAT(scan_int("99999999999999999999999"), Optional(highest));
    EXPECT_THAT(scan_int("-2147483648"), Optional(lowest));
    EXPECT_THAT(scan_int("-2147483649"), Optional(lowest));
    EXPECT_THAT(scan_int("0x7FFFFFFF"), Optional(highest));
    EXPECT_THAT(scan_int("0x80000000"), Optional(highest));
    EXPECT_THAT(scan_int("0xFFFFFFFF"), Optional(highest));
    EXPECT_THAT(scan_int("-0xFFFFFFFFFFFFFFFFFF"), Optional(lowest));
    EXPECT_THAT(scan_int("037777777777"), Optional(highest));
}

} // namespace
