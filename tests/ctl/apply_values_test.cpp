// Applies the output of show, for values of every type, and tests the guards of a state.
#include "ctl/program_run.h"

#include "ctl/failure.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::HasSubstr;
using testing::Not;

struct Stored {
    const char* what;
    DWORD type;
    std::string octets;
    /// As show prints it: for programs, and for people.
    const char* json;
    const char* text;
};

std::string text_data(const char* text) { return std::string(text) + '\0'; }

const Stored values_of_every_type[] = {
    {"a text", REG_SZ, text_data("web1"), R"("value": "web1",)", "web1"},
    {"an empty text", REG_SZ, text_data(""), R"("value": "",)", "(empty)"},
    {"a text without its end", REG_SZ, "web1", R"("value": "web1",)", "web1"},
    {"a text without an octet", REG_SZ, "", R"("value": "",)", "(empty)"},
    {"two texts in one", REG_SZ, std::string("a\0b\0", 4), R"("value": "a",)", "a"},
    {"a text of the longest kind", REG_SZ, std::string(1023, 'x') + '\0', R"("value": "xxx)", "xxx"},
    {"a text of 1,024 octets without its end", REG_SZ, std::string(1024, 'x'), R"("value": "xxx)", "xxx"},
    {"a text that is too long", REG_SZ, std::string(1025, 'x'), R"("unreadable": "longer than 1,024 bytes",)",
     "(longer than 1,024 bytes)"},
    {"a text that the code page does not have", REG_SZ, text_data("a\x81"), R"("octets": "6100fdff0000",)",
     "hex 6100fdff0000 (REG_SZ)"},
    {"an expandable text", REG_EXPAND_SZ, text_data("%A%"), R"("value": "%A%",)", "%A% (REG_EXPAND_SZ)"},
    {"octets without a type", REG_NONE, "\x01", R"("octets": "01",)", "hex 01 (REG_NONE)"},
    {"nothing without a type", REG_NONE, "", R"("octets": "",)", "empty (REG_NONE)"},
    {"octets", REG_BINARY, std::string("\0\xFF\n", 3), R"("octets": "00ff0a",)", "hex 00ff0a (REG_BINARY)"},
    {"many octets", REG_BINARY, std::string(1024, '\x07'), R"("octets": "070707)",
     "hex 0707070707070707070707070707070707070707070707070707070707070707"},
    {"too many octets", REG_BINARY, std::string(5000, '\x07'), R"("unreadable": "longer than 1,024 bytes",)",
     "(longer than 1,024 bytes)"},
    {"a number", REG_DWORD, std::string("\x88\x13\0\0", 4), R"("octets": "88130000",)", "5000 (REG_DWORD)"},
    {"a number of three octets", REG_DWORD, "abc", R"("octets": "616263",)", "hex 616263 (REG_DWORD)"},
    {"a number in the other order", 5, std::string("\0\0\x13\x88", 4), R"("octets": "00001388",)",
     "hex 00001388 (REG_DWORD_BIG_ENDIAN)"},
    {"a link", 6, "\\A", R"("octets": "5c41",)", "hex 5c41 (REG_LINK)"},
    {"several texts", REG_MULTI_SZ, std::string("a\0b\0\0", 5), R"("octets": "61000000620000000000",)",
     "hex 61000000620000000000 (REG_MULTI_SZ)"},
    {"a number of 64 bits", REG_QWORD, std::string("\1\0\0\0\0\0\0\x80", 8),
     R"("octets": "0100000000000080",)", "9223372036854775809 (REG_QWORD)"},
    {"a type without a name", 4660, "x", R"("octets": "78",)", "hex 78 (type 4660)"},
};

class StoredValues : public Program {
protected:
    std::string shown() { return run({"show", "Agent", "--json"}).out; }
    void expect_unchanged(const std::string& state) {
        const int writes = substitute::call_count("RegSetValueExA");
        const Ended done = apply(state, {"--exit-code"});
        EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
        EXPECT_EQ(substitute::call_count("RegSetValueExA"), writes);
        EXPECT_EQ(substitute::call_count("RegDeleteValueA"), 0);
        EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
    }
};

TEST_F(StoredValues, OfEveryTypeStayAsTheyAreWhenApplyReadsWhatShowPrinted) {
    for (const Stored& each : values_of_every_type) {
        SCOPED_TRACE(each.what);
        set_value(key, "AgentName", each.type, each.octets);
        EXPECT_THAT(shown(), HasSubstr(each.json));
        expect_unchanged(shown());
    }
}

TEST_F(StoredValues, OfEveryTypeAreShownToPeople) {
    for (const Stored& each : values_of_every_type) {
        SCOPED_TRACE(each.what);
        set_value(key, "AgentName", each.type, each.octets);
        const std::string words = each.text;
        EXPECT_THAT(run({"show", "Agent"}).out, HasSubstr("    AgentName   String          " + words));
    }
}

TEST_F(StoredValues, OfOtherTypesAreRefusedWhereTheyAreNotStored) {
    for (const Stored& each : values_of_every_type) {
        SCOPED_TRACE(each.what);
        set_value(key, "AgentName", each.type, each.octets);
        const std::string state = shown();
        if (state.find("\"type\": ") == std::string::npos)
            continue;
        set_text(key, "AgentName", "web1");
        const Ended done = apply(state);
        EXPECT_EQ(done.code, ctl::ExitCode::invalid);
        EXPECT_THAT(done.err, HasSubstr("Agent: AgentName: only texts can be written; a value of the type "));
        EXPECT_THAT(done.err,
                    HasSubstr(" is accepted only if it is already stored, but stored here is web1\n"));
        EXPECT_EQ(text("AgentName"), "web1");
    }
}

TEST_F(StoredValues, WithOtherOctetsAreRefused) {
    set_value(key, "Port", REG_BINARY, "a");
    const std::string state = shown();
    set_value(key, "Port", REG_BINARY, "b");
    EXPECT_THAT(apply(state).err, HasSubstr("but stored here is hex 62 (REG_BINARY)\n"));
    set_value(key, "Port", REG_NONE, "a");
    EXPECT_THAT(apply(state).err, HasSubstr("but stored here is hex 61 (REG_NONE)\n"));
    set_value(key, "Port", REG_BINARY, std::string(32, '\x07'));
    EXPECT_THAT(apply(state).err, HasSubstr("0707070707070707 (REG_BINARY)\n"));
    set_value(key, "Port", REG_BINARY, std::string(33, '\x07'));
    EXPECT_THAT(
        apply(state).err,
        HasSubstr("but stored here is hex 0707070707070707070707070707070707070707070707070707070707070707"
                  "... (REG_BINARY)\n"));
}

TEST_F(StoredValues, ThatAreMissingStayAway) {
    set_text(key, "First", "x");
    EXPECT_THAT(shown(), HasSubstr("\"Second\": {\n          \"value\": null,"));
    expect_unchanged(shown());
}

TEST_F(StoredValues, OfAMissingKeyAreNoneToBeWritten) {
    delete_key(key);
    expect_unchanged(shown());
    const Ended done = change({"set", "Agent", "Port=1"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(done.err, HasSubstr("the key HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent does not exist"));
}

TEST_F(StoredValues, AreFoundInAnyLetterCaseBeyondAscii) {
    make_key("SOFTWARE\\Caf\xE9");
    add_configuration("Caf", "SOFTWARE\\Caf\xE9\nCAF\xC9\n!G\n$A\nGr\xF6\xDF"
                             "e\nH\nString\n");
    EXPECT_EQ(change({"set", "caf\xC3\xA9",
                      "GR\xC3\x96\xC3\x9F"
                      "E=1"})
                  .code,
              ctl::ExitCode::success);
    EXPECT_EQ(text_value("SOFTWARE\\Caf\xE9", "Gr\xF6\xDF"
                                              "e"),
              "1");
}

TEST_F(StoredValues, OfAConfigurationOutsideTheCodePageAreRefused) {
    add_configuration("Nameless", "SOFTWARE\\Tavrin\\Agent\n\n!G\n$A\nPort\nH\nInteger\n");
    const Ended done = change({"set", "\xE2\x98\x83", "Port=1"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(done.err, HasSubstr("there is no configuration \"\xE2\x98\x83\""));
    EXPECT_EQ(text("Port"), "5000");
}

TEST_F(StoredValues, ManyUnknownNamesAreCounted) {
    std::string values = "\"N0\":\"1\"";
    for (int i = 1; i < 1000; ++i)
        values += ",\"N" + std::to_string(i) + "\":\"1\"";
    const Ended done = apply(R"({"schema":1,"configurations":{"Agent":{"values":{)" + values + "}}}}");
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(std::count(done.err.begin(), done.err.end(), '\n'), 22);
    EXPECT_THAT(done.err,
                testing::EndsWith(
                    "  Agent: N19: unknown value; \"tavrinctl show\" lists them all\n  and 980 more\n"));
}

class MadeFor : public Program {
protected:
    Ended apply_with(const std::string& members) {
        return apply(R"({"schema":1,"configurations":{"Agent":{)" + members + R"(,"values":{"Port":"1"}}}})");
    }
};

TEST_F(MadeFor, AnotherKeyOrServiceIsAWarning) {
    const Ended done = apply_with(R"("key":"SOFTWARE\\Other","service":"OtherService")");
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.err,
                HasSubstr("tavrinctl: warning: Agent: the key is \"SOFTWARE\\Tavrin\\Agent\" here, not "
                          "\"SOFTWARE\\Other\"\n"));
    EXPECT_THAT(done.err, HasSubstr("tavrinctl: warning: Agent: the service is \"AgentService\" here, not "
                                    "\"OtherService\"\n"));
    EXPECT_EQ(text("Port"), "1");
}

TEST_F(MadeFor, TheSameKeyAndServiceInAnyLetterCase) {
    const Ended done = apply_with(R"("key":"Software\\TAVRIN\\agent","service":"agentservice")");
    EXPECT_THAT(done.err, Not(HasSubstr("warning")));
}

TEST_F(MadeFor, GuardsThatHold) {
    add_configuration("Agent", "SOFTWARE\\Tavrin\\Agent\nAgent\n!G\n$P\nPort\nH\nInteger\n");
    const Ended done = apply_with(R"("guards":{"key":"SOFTWARE\\Tavrin\\Agent","sha256":)"
                                  R"("aa3e30ace0c183c1cda092f30718a31daba5296068ca502087ae7d2bcd5465dc"})");
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
}

TEST_F(MadeFor, GuardsThatDoNotHoldRefuseEverything) {
    const Ended done = apply_with(R"("guards":{"key":"K","service":"S","sha256":"00"})");
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(
        done.err,
        HasSubstr("nothing was written:\n"
                  "  Agent: a guard of the state does not hold: the key is \"SOFTWARE\\Tavrin\\Agent\" here, "
                  "not \"K\"\n"
                  "  Agent: a guard of the state does not hold: the service is \"AgentService\" here, not "
                  "\"S\"\n"
                  "  Agent: a guard of the state does not hold: the SHA-256 of the spec file is \""));
    EXPECT_EQ(text("Port"), "5000");
}

} // namespace
