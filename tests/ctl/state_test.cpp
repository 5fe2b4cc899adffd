// The form of state files, and the errors in them.
#include "ctl/change/state_file.h"
#include "ctl/failure.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

std::string refused(const std::string& octets) {
    try {
        ctl::read_state(octets);
    } catch (const ctl::Failure& failure) {
        EXPECT_EQ(failure.code, ctl::ExitCode::invalid);
        return failure.text;
    }
    return "not refused";
}

std::string with_values(const std::string& values) {
    return R"({"schema":1,"configurations":{"A":{"values":)" + values + "}}}";
}

TEST(State, ValuesStandAloneOrInAnObject) {
    const ctl::State state = ctl::read_state(R"({"schema":1,"configurations":{"A":{"key":"K","service":"S",
        "values":{"Text":"t","Whole":-5,"Flag":true,"None":null,
                  "Full":{"value":"v","group":"G","title":"T","kind":"String","type":"REG_SZ"},
                  "Long":{"unreadable":"longer than 1,024 bytes"}},"actions":[{"kind":"RemoveKey"}]}}})");
    ASSERT_EQ(state.size(), 1u);
    EXPECT_EQ(state[0].name, "A");
    EXPECT_EQ(state[0].key, "K");
    ASSERT_EQ(state[0].values.size(), 5u);
    EXPECT_EQ(state[0].values[0].text, "t");
    EXPECT_EQ(state[0].values[1].text, "-5");
    EXPECT_EQ(state[0].values[2].text, "true");
    EXPECT_EQ(state[0].values[3].text, std::nullopt);
    EXPECT_EQ(state[0].values[4].name, "Full");
    EXPECT_EQ(state[0].values[4].text, "v");
}

TEST(State, AByteOrderMarkIsPassedOver) {
    EXPECT_EQ(ctl::read_state("\xEF\xBB\xBF" + with_values("{}")).size(), 1u);
}

TEST(State, OtherTextsAreRefused) {
    EXPECT_THAT(refused(""), HasSubstr("parse error at line 1, column 1"));
    EXPECT_THAT(refused("{"), HasSubstr("parse error at line 1, column 2"));
    EXPECT_EQ(refused("[]"), "the state is not an object");
    EXPECT_EQ(refused("7"), "the state is not an object");
    EXPECT_THAT(refused(with_values("{}") + "x"), HasSubstr("parse error"));
    EXPECT_THAT(refused(with_values("{\"V\":\"\xFF\"}")), HasSubstr("ill-formed UTF-8"));
    EXPECT_EQ(refused(std::string("\xFF\xFE{\0", 4)), "the text is UTF-16; save it as UTF-8");
    EXPECT_EQ(refused(with_values("{}") + '\0' + "and more"), "the text has a zero byte");
}

TEST(State, VersionsOfTheForm) {
    EXPECT_EQ(refused("{}"), "the state has no member \"schema\"");
    EXPECT_EQ(refused(R"({"schema":2})"), "the state's schema is 2; this program reads 1");
    EXPECT_EQ(refused(R"({"schema":"1"})"),
              "the state's \"schema\" is not a number; write 1, without quotes");
    EXPECT_EQ(refused(R"({"schema":1})"), "the state has no member \"configurations\"");
}

TEST(State, UnknownMembersAreRefused) {
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{},"more":1})"),
              "the state has an unknown member \"more\"");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":{"valeus":{}}}})"),
              "the configuration \"A\" has an unknown member \"valeus\"");
    EXPECT_EQ(refused(with_values(R"({"V":{"value":"1","extra":2}})")),
              "\"V\" has an unknown member \"extra\"");
    EXPECT_EQ(refused(with_values(R"({"V":{}})")), "the value \"V\" has no member \"value\"");
}

TEST(State, MembersOfAnotherKindAreRefused) {
    EXPECT_EQ(refused(R"({"schema":1,"configurations":[]})"),
              "\"configurations\" of the state is not an object");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":1}})"),
              "the configuration \"A\" is not an object");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":{}}})"),
              "the configuration \"A\" has no member \"values\"");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":{"key":1,"values":{}}}})"),
              "\"key\" is not a text");
    EXPECT_EQ(refused(with_values(R"({"V":[]})")),
              "the value \"V\" must be a text, a whole number, true, false or null");
}

TEST(State, NumbersOfOtherFormsAreNamed) {
    const std::string fraction = ", which is not a whole number; write it in plain decimal digits";
    EXPECT_EQ(refused(with_values(R"({"V":1.5})")), "the value \"V\" is 1.5" + fraction);
    EXPECT_EQ(refused(with_values(R"({"V":5e3})")), "the value \"V\" is 5e3" + fraction);
    EXPECT_EQ(refused(with_values(R"({"V":18446744073709551616})")),
              "the value \"V\" is 18446744073709551616, which is out of range: whole numbers go from "
              "-2147483648 to 2147483647");
}

TEST(State, ValuesOfOtherTypesHaveTheirOctets) {
    const ctl::State state = ctl::read_state(with_values(
        R"({"B":{"type":"REG_BINARY","octets":"00fF"},"E":{"type":"REG_EXPAND_SZ","value":"%A%"},)"
        R"("N":{"type":"REG_NONE","octets":""}})"));
    const auto& values = state[0].values;
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0].type, "REG_BINARY");
    EXPECT_EQ(values[0].octets, std::string("\0\xFF", 2));
    EXPECT_EQ(values[0].text, std::nullopt);
    EXPECT_EQ(values[1].type, "REG_EXPAND_SZ");
    EXPECT_EQ(values[1].text, "%A%");
    EXPECT_EQ(values[1].octets, std::nullopt);
    EXPECT_EQ(values[2].octets, "");
}

TEST(State, OctetsOfOtherFormsAreRefused) {
    const std::string digits = "the octets of the value \"V\" must be two hexadecimal digits each";
    for (const char* octets : {"0", "0g", "g0", "+1", " 1", "0x01", "\\u0010\\u0010"}) {
        EXPECT_EQ(
            refused(with_values(R"({"V":{"type":"REG_BINARY","octets":")" + std::string(octets) + "\"}}")),
            digits)
            << octets;
    }
    const std::string both = "the value \"V\" needs \"type\" beside \"octets\", and no \"value\"";
    EXPECT_EQ(refused(with_values(R"({"V":{"octets":"00"}})")), both);
    EXPECT_EQ(refused(with_values(R"({"V":{"type":"REG_BINARY","octets":"00","value":"0"}})")), both);
    EXPECT_EQ(refused(with_values(R"({"V":{"type":"REG_DWORD","value":"7"}})")),
              "the value \"V\" of the type REG_DWORD has no member \"octets\"");
}

TEST(State, WhatAReportTellsIsPassedOver) {
    const ctl::State state = ctl::read_state(
        R"({"schema":1,"machine":{"name":"m"},"specFiles":[],"configurations":{"A":{"service":"S",)"
        R"("serviceState":"running","startType":"auto","restartPending":false,"values":{}}}})");
    EXPECT_EQ(state[0].service, "S");
    EXPECT_EQ(state[0].guards.key, "");
}

TEST(State, Guards) {
    const ctl::State state = ctl::read_state(
        R"({"schema":1,"configurations":{"A":{"values":{},"guards":{"key":"K","service":"S","sha256":"00"}}}})");
    EXPECT_EQ(state[0].guards.key, "K");
    EXPECT_EQ(state[0].guards.service, "S");
    EXPECT_EQ(state[0].guards.sha256, "00");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":{"values":{},"guards":{"sha":"00"}}}})"),
              "\"guards\" of the configuration \"A\" has an unknown member \"sha\"");
    EXPECT_EQ(refused(R"({"schema":1,"configurations":{"A":{"values":{},"guards":1}}})"),
              "\"guards\" of the configuration \"A\" is not an object");
}

TEST(State, ANameTwiceIsRefused) {
    EXPECT_EQ(refused(with_values(R"({"V":"1","V":"2"})")), "\"V\" occurs twice in one object");
    EXPECT_EQ(refused(R"({"schema":1,"schema":1})"), "\"schema\" occurs twice in one object");
}

TEST(State, DepthAndSizeAreBounded) {
    const std::string deep(1'000'000, '[');
    EXPECT_EQ(refused(deep), "the nesting is deeper than 8");
    std::string blanks;
    blanks.resize(16'777'216, ' ');
    EXPECT_THAT(refused(blanks), HasSubstr("parse error"));
    EXPECT_EQ(refused(blanks + ' '), "the text is larger than 16 MiB");
}

TEST(State, ManyValuesTakeNoLongThinking) {
    std::string values = "{\"V\":\"1\"";
    for (int i = 0; i < 200'000; ++i)
        values += ",\"V" + std::to_string(i) + "\":\"1\"";
    EXPECT_EQ(ctl::read_state(with_values(values + "}"))[0].values.size(), 200'001u);
}

} // namespace
