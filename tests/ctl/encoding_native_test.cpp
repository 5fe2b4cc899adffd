// Code pages without Windows: compares the table with iconv's, byte by byte, and tests invalid UTF-8 and
// UTF-16.
#include "ctl/io/encoding.h"

#include <gtest/gtest.h>

#include <iconv.h>

namespace ctl {
namespace {

/// What iconv makes of octets; nothing if it cannot convert all of them into one character.
std::string by_iconv(unsigned code_page, std::string octets) {
    const iconv_t converter = iconv_open("UTF-8", ("CP" + std::to_string(code_page)).c_str());
    char made[16];
    char* from = octets.data();
    char* to = made;
    std::size_t left = octets.size();
    std::size_t room = sizeof made;
    const bool is_complete = iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    iconv(converter, nullptr, nullptr, &to, &room);
    iconv_close(converter);
    return is_complete ? std::string(made, to) : "";
}

/// The octets of one character each: all single ones, and every pair whose first is none by itself.
std::vector<std::string> octets_of(unsigned code_page) {
    std::vector<std::string> found;
    for (int first = 1; first < 256; ++first) {
        const std::string single(1, static_cast<char>(first));
        if (!by_iconv(code_page, single).empty()) {
            found.push_back(single);
        } else if (code_page > 900 && code_page < 1000) {
            for (int second = 0x40; second < 0xFF; second += 9)
                found.push_back(single + static_cast<char>(second));
        }
    }
    return found;
}

class CodePages : public testing::TestWithParam<unsigned> {};

TEST_P(CodePages, AreThoseOfTheSystem) {
    ASSERT_TRUE(is_code_page(GetParam()));
    for (const std::string& octets : octets_of(GetParam())) {
        const std::string character = by_iconv(GetParam(), octets);
        if (character.empty())
            continue; // a pair without a meaning
        EXPECT_EQ(to_utf8(octets, GetParam()), character);
        const auto back = from_utf8(character, GetParam());
        ASSERT_TRUE(back) << character;
        EXPECT_EQ(by_iconv(GetParam(), *back), character) << "some characters have two places";
    }
}

INSTANTIATE_TEST_SUITE_P(OfWindows, CodePages,
                         testing::Values(437, 850, 866, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254,
                                         1255, 1256, 1257, 1258));

TEST(Encoding, KnowsNoOtherCodePages) {
    for (const unsigned number : {0U, 9U, 1200U, 1259U, 65000U})
        EXPECT_FALSE(is_code_page(number)) << number;
    EXPECT_TRUE(is_code_page(65001));
}

TEST(Encoding, ReplacesOctetsWithoutAMeaning) {
    EXPECT_EQ(to_utf8("a\x81z", 1252), "a\uFFFDz");
    EXPECT_EQ(to_utf8("a\x81", 932), "a\uFFFD") << "the first of two";
    EXPECT_EQ(to_utf8("\x83\x41\x81 ", 932), "\u30A2\uFFFD ");
}

TEST(Encoding, RefusesWhatACodePageLacks) {
    EXPECT_EQ(from_utf8("Z\u00FCrich", 1252), "Z\xFCrich");
    EXPECT_EQ(from_utf8("\u4E2D", 1252), std::nullopt);
    EXPECT_EQ(from_utf8("\u4E2D", 936), "\xD6\xD0");
}

TEST(Encoding, TakesUtf8Strictly) {
    const char* good[] = {"", "a", "\u00E4", "\u20AC", "\U00010000", "\U0001F600", "\U0010FFFF"};
    for (const char* text : good) {
        EXPECT_EQ(from_utf8(text, 65001), text);
        EXPECT_EQ(to_utf8(text, 65001), text);
        EXPECT_EQ(from_utf16(to_utf16(text)), text);
    }
    const char* bad[] = {
        "\x80",             // the middle of a character
        "\xC3",             // cut
        "\xE2\x82",         // cut
        "\xC0\x80",         // longer than it must be
        "\xE0\x80\x80",     // the same
        "\xF0\x80\x80\x80", // the same
        "\xED\xA0\x80",     // half of a pair of UTF-16
        "\xF4\x90\x80\x80", // beyond the last character
        "\xF8\x88\x80\x80", // of five octets
        "\xC3(",            // no second octet
    };
    for (const char* text : bad) {
        EXPECT_EQ(from_utf8(text, 65001), std::nullopt) << text;
        EXPECT_EQ(to_utf8(text, 65001).substr(0, 3), "\uFFFD") << text;
    }
}

TEST(Encoding, BringsLettersIntoOneCase) {
    EXPECT_EQ(in_one_case("Gr\u00F6\u00DFe az{`@[ \u03B1\u0436\u0101"),
              "GR\u00D6\u00DFE AZ{`@[ \u0391\u0416\u0100");
    EXPECT_EQ(in_one_case("\U0001F600\x80"), "\U0001F600\uFFFD");
}

TEST(Encoding, WritesAndReadsUtf16) {
    using namespace std::string_literals;
    EXPECT_EQ(to_utf16("a\u20AC\U0001F600"), "a\0\xAC\x20\x3D\xD8\x00\xDE"s);
    EXPECT_EQ(from_utf16("a\0\xAC\x20\x3D\xD8\x00\xDE"s), "a\u20AC\U0001F600");
    for (const std::string& bad : {"\x3D\xD8"s, "\x3D\xD8z\0"s, "\x00\xDE"s, "\x00\xDE\x3D\xD8"s})
        EXPECT_EQ(from_utf16("a\0"s + bad), "a");
    EXPECT_EQ(from_utf16("a\0b"s), "a") << "half an octet pair";
}

} // namespace
} // namespace ctl
