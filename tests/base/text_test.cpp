#include "base/text.h"

#include "platform/win32.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NumberText, HasTwoDigitsWhereWanted) {
    EXPECT_EQ(number_text(0, false), "0");
    EXPECT_EQ(number_text(0, true), "00");
    EXPECT_EQ(number_text(7, true), "07");
    EXPECT_EQ(number_text(10, true), "10");
    EXPECT_EQ(number_text(100, true), "100");
    EXPECT_EQ(number_text(4294967295U, false), "4294967295");
}

TEST(SignedNumberText, HasTwoDigitsWhereWanted) {
    EXPECT_EQ(signed_number_text(0, true), "00");
    EXPECT_EQ(signed_number_text(9, true), "09");
    EXPECT_EQ(signed_number_text(-5, true), "-5");
    EXPECT_EQ(signed_number_text(-5, false), "-5");
    EXPECT_EQ(signed_number_text(2147483647, false), "2147483647");
    EXPECT_EQ(signed_number_text(-2147483647 - 1, true), "-2147483648");
}

TEST(NumberText, ShowsPortsAsSignedNumbers) {
    EXPECT_EQ(port_text(0), "0");
    EXPECT_EQ(port_text(32767), "32767");
    EXPECT_EQ(port_text(32768), "-32768");
    EXPECT_EQ(port_text(65535), "-1");
}

TEST(ToLower, ChangesCapitalLettersOnly) {
    std::string all;
    std::string expected;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
        expected += static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + 32 : byte);
    }
    EXPECT_EQ(to_lower(all), expected);
    EXPECT_EQ(to_lower(""), "");
}

TEST(QuoteString, EscapesEveryByteBelow32) {
    const char* const expected[32] = {"\\000", "\\001", "\\002", "\\003", "\\004", "\\005", "\\006", "\\a",
                                      "\\b",   "\\t",   "\\n",   "\\v",   "\\f",   "\\r",   "\\016", "\\017",
                                      "\\020", "\\021", "\\022", "\\023", "\\024", "\\025", "\\026", "\\027",
                                      "\\030", "\\031", "\\032", "\\033", "\\034", "\\035", "\\036", "\\037"};
    for (int byte = 0; byte < 32; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(quote_string(text), std::string("\"") + expected[byte] + '"');
    }
}

TEST(QuoteString, CopiesEveryOtherByteButThree) {
    for (int byte = 32; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const bool escaped = byte == '"' || byte == '\'' || byte == '\\';
        EXPECT_EQ(quote_string(text), (escaped ? "\"\\" : "\"") + text + '"') << byte;
    }
}

TEST(QuoteString, QuotesWholeTexts) {
    EXPECT_EQ(quote_string(""), "\"\"");
    EXPECT_EQ(quote_string("\t\x01\xC8"), "\"\\t\\001\xC8\"");
    EXPECT_EQ(quote_string(std::string("a\0b", 3)), "\"a\\000b\"");
    EXPECT_EQ(quote_string("say \"it's\" C:\\x"), "\"say \\\"it\\'s\\\" C:\\\\x\"");
}

std::vector<std::string> pieces(const std::string& text, bool keep_empty, char separator = ',') {
    std::vector<std::string> list = {"left over"};
    split_string(list, text, separator, keep_empty);
    return list;
}

TEST(SplitString, DropsEmptyPieces) {
    EXPECT_THAT(pieces("a,,b", false), ElementsAre("a", "b"));
    EXPECT_THAT(pieces(",a,", false), ElementsAre("a"));
    EXPECT_THAT(pieces(",,,", false), IsEmpty());
    EXPECT_THAT(pieces("", false), IsEmpty());
    EXPECT_THAT(pieces(" a , b ", false), ElementsAre(" a ", " b "));
}

TEST(SplitString, KeepsEmptyPieces) {
    EXPECT_THAT(pieces("a,,b", true), ElementsAre("a", "", "b"));
    EXPECT_THAT(pieces(",a,", true), ElementsAre("", "a", ""));
    EXPECT_THAT(pieces(",", true), ElementsAre("", ""));
    EXPECT_THAT(pieces("", true), ElementsAre(""));
}

TEST(SplitString, SeparatesAtAnyByte) {
    EXPECT_THAT(pieces("one", false), ElementsAre("one"));
    EXPECT_THAT(pieces(std::string("a\0b", 3), false, '\0'), ElementsAre("a", "b"));
    EXPECT_THAT(pieces("a\xFF"
                       "b,c",
                       false, '\xFF'),
                ElementsAre("a", "b,c"));
}

std::uint32_t sum_of(const std::string& text) { return crc32(text.data(), text.size()); }

TEST(Crc32, HasTheKnownCheckValues) {
    EXPECT_EQ(crc32(nullptr, 0), 0U);
    EXPECT_EQ(sum_of("123456789"), 0xCBF43926U);
    EXPECT_EQ(sum_of("a"), 0xE8B7BE43U);
    EXPECT_EQ(sum_of("abc"), 0x352441C2U);
    EXPECT_EQ(sum_of("The quick brown fox jumps over the lazy dog"), 0x414FA339U);
    EXPECT_EQ(sum_of(std::string(32, '\0')), 0x190A55ADU);
    EXPECT_EQ(sum_of(std::string(32, '\xFF')), 0xFF6CAB0BU);
}

struct Item {
    const char* text;
    const char* host;
    std::optional<std::string> port_text;
};

TEST(ServerItem, IsSplitAtItsFirstColon) {
    const Item items[] = {{"alpha", "alpha", std::nullopt},
                          {"", "", std::nullopt},
                          {"10.0.0.7:5000", "10.0.0.7", "5000"},
                          {"alpha:", "alpha", ""},
                          {":80", "", "80"},
                          {":", "", ""},
                          {"a:b:c", "a", "b:c"},
                          {" alpha : 80 ", " alpha ", " 80 "}};
    for (const Item& each : items) {
        const ServerItem item = split_server_item(each.text);
        EXPECT_EQ(item.host, each.host) << each.text;
        EXPECT_EQ(item.port_text, each.port_text) << each.text;
    }
}

TEST(SameIgnoringCase, HoldsForAsciiLettersOnly) {
    EXPECT_TRUE(same_ignoring_case("", ""));
    EXPECT_TRUE(same_ignoring_case("AZaz09_@[`{", "azAZ09_@[`{"));
    for (const char* other : {"@", "`", "ab", "", "B", "\xC1"})
        EXPECT_FALSE(same_ignoring_case("a", other)) << other;
    EXPECT_FALSE(same_ignoring_case("\xC4", "\xE4"));
    EXPECT_FALSE(same_ignoring_case("[", "{"));
}

} // namespace
