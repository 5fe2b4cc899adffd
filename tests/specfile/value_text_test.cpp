#include "specfile/value_text.h"

#include <gmock/gmock.h>

namespace {

using namespace std::string_literals;
using testing::Optional;

/// A declaration of this type, with these lines below it.
Declaration declared(const char* type, const std::vector<SpecLine>& further = {}) {
    Declaration declaration;
    declaration.type.text = type;
    declaration.kind = find_entry_kind(type);
    declaration.further = further;
    return declaration;
}

std::string stored(const char* type, const std::string& text) { return stored_by_page(declared(type), text); }

std::optional<std::string> problem(const char* type, const std::string& text) {
    return value_problem(declared(type), text);
}

const std::string longest(1023, 'x');

TEST(StoredByPage, ABooleanIsOneOfTwoWords) {
    for (const char* text : {"true", "TRUE", "tRuE"})
        EXPECT_EQ(stored("Boolean", text), "true") << text;
    for (const char* text : {"", "false", "1", "yes", " true", "true "})
        EXPECT_EQ(stored("Boolean", text), "false") << text;
}

TEST(StoredByPage, AnIntegerIsPlainDecimal) {
    const std::pair<const char*, const char*> cases[] = {
        {"17", "17"},   {"0x10", "16"},
        {"010", "8"},   {" 42abc", "42"},
        {"-0", "0"},    {"+7", "7"},
        {"apples", ""}, {"-", ""},
        {"", ""},       {"2147483648", "2147483647"},
        {"0x", "0"},    {"-99999999999", "-2147483648"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(stored("Integer", text), expected) << text;
}

TEST(StoredByPage, EveryOtherTextStaysAsItIsUpToItsLimit) {
    for (const char* type : {"String", "string", "Options", "COM", "Directory", "File", "ServerList"}) {
        EXPECT_EQ(stored(type, " 0x10 TRUE,a:b "), " 0x10 TRUE,a:b ") << type;
        EXPECT_EQ(stored(type, longest), longest) << type;
        EXPECT_EQ(stored(type, longest + "y"), longest) << type;
    }
}

TEST(ValueProblem, NoTextIsLongerThanAPageTakes) {
    for (const char* type : {"String", "string", "COM", "Directory", "File", "ServerList"}) {
        EXPECT_EQ(problem(type, ""), std::nullopt) << type;
        EXPECT_EQ(problem(type, longest), std::nullopt) << type;
        EXPECT_THAT(problem(type, longest + "x"), Optional("longer than 1023 bytes"s)) << type;
    }
    EXPECT_THAT(problem("Integer", std::string(1024, '0')), Optional("longer than 1023 bytes"s));
}

TEST(ValueProblem, NoTextHoldsAZeroByte) {
    EXPECT_THAT(problem("String", "a\0b"s), Optional("contains a zero byte"s));
    EXPECT_THAT(problem("Integer", "1\0"s), Optional("contains a zero byte"s));
}

TEST(ValueProblem, AnIntegerIsAWholeNumber) {
    for (const char* text : {"", "0", "17", "-5", "2147483647", "-2147483648"})
        EXPECT_EQ(problem("Integer", text), std::nullopt) << text;
    for (const char* text : {"apples", "12 apples", "5 ", "1.5", "5e3", "-", "0x", "0b1", " ", "--5", "5-"})
        EXPECT_THAT(problem("Integer", text), Optional("not a whole number"s)) << text;
}

TEST(ValueProblem, OtherNotationsAreRefusedWithTheDecimalToWrite) {
    const std::pair<const char*, const char*> cases[] = {
        {"060", "a leading zero makes it octal for the agent; write 60"},
        {"-007", "a leading zero makes it octal for the agent; write -7"},
        {"089", "a leading zero makes it octal for the agent; write 89"},
        {"00", "a leading zero makes it octal for the agent; write 0"},
        {"0x1F", "not in plain decimal digits; write 31"},
        {"-0x80000000", "not in plain decimal digits; write -2147483648"},
        {"+5", "not in plain decimal digits; write 5"},
        {" 5", "not in plain decimal digits; write 5"},
        {"-0", "write 0"},
    };
    for (const auto& [text, words] : cases)
        EXPECT_THAT(problem("Integer", text), Optional(std::string(words))) << text;
}

TEST(ValueProblem, AnIntegerHas32Bits) {
    for (const char* text :
         {"2147483648", "-2147483649", "0x80000000", "18446744073709551616", "99999999999999999999999"})
        EXPECT_THAT(problem("Integer", text), Optional("not between -2147483648 and 2147483647"s)) << text;
}

TEST(ValueProblem, ABooleanIsNotGuessed) {
    for (const char* text : {"true", "false", "TRUE", "False"})
        EXPECT_EQ(problem("Boolean", text), std::nullopt) << text;
    for (const char* text : {"", "1", "yes", "true "})
        EXPECT_THAT(problem("Boolean", text), Optional("neither \"true\" nor \"false\""s)) << text;
}

TEST(ValueProblem, AnOptionIsOneOfThoseDeclared) {
    const Declaration choice = declared("Options", {{"errors", 8}, {"", 9}, {"normal", 10}});
    for (const char* text : {"errors", "", "normal"})
        EXPECT_EQ(value_problem(choice, text), std::nullopt) << text;
    EXPECT_THAT(value_problem(choice, "Normal"),
                Optional("not one of the options \"errors\", \"\", \"normal\""s));
    EXPECT_THAT(problem("Options", "any"), Optional("there are no options to choose from"s));
}

TEST(ValueProblem, TheServersPortsAreNumbers) {
    for (const char* text : {"", "a", "a,b:1", "a:0,,b:65535,", "a:", "10.0.0.7:5000"})
        EXPECT_EQ(problem("ServerList", text), std::nullopt) << text;
    EXPECT_THAT(problem("ServerList", "a,b:x,c:y"),
                Optional("the port \"x\" of the server \"b\" is not a number from 0 to 65535"s));
    for (const char* port : {"65536", "-1", "+1", "0x10", "1:2", "99999999999999999999"}) {
        EXPECT_THAT(
            problem("ServerList", "a:"s + port),
            Optional("the port \""s + port + "\" of the server \"a\" is not a number from 0 to 65535"));
    }
}

TEST(ValueProblem, AServerHasANameAndNoBlanks) {
    const std::pair<const char*, const char*> cases[] = {
        {"a, b", "\" b\" contains a space; separate servers by a comma only"},
        {"a b", "\"a b\" contains a space; separate servers by a comma only"},
        {"a: 5", "\"a: 5\" contains a space; separate servers by a comma only"},
        {"a\t", "\"a\t\" contains a space; separate servers by a comma only"},
        {"b,:5", "\":5\" does not name a server"},
        {":", "\":\" does not name a server"},
    };
    for (const auto& [text, words] : cases)
        EXPECT_THAT(problem("ServerList", text), Optional(std::string(words))) << text;
}

TEST(ValueProblem, WhatHasNoValueTakesNone) {
    for (const char* type : {"RemoveKey", "SignalEvent", "ConnectionTest", "no such type"})
        EXPECT_THAT(problem(type, ""), Optional("there is no value to set"s)) << type;
}

} // namespace
