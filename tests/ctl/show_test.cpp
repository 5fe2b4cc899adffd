// show and dsc over the substitute.
#include "ctl/program_run.h"

#include "ctl/failure.h"
#include "substitute/control.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace {

using testing::HasSubstr;

class Show : public Program {
protected:
    /// With `text` as the standard input.
    Ended dsc(const std::string& operation, const std::string& text, std::vector<std::string> more = {}) {
        const std::string path = scratch.path_of("input");
        std::ofstream(path, std::ios::binary) << text;
        std::FILE* const input = std::freopen(path.c_str(), "rb", stdin);
        EXPECT_NE(input, nullptr);
        more.insert(more.begin(), {"dsc", operation});
        return operation == "set" ? change(std::move(more)) : run(more);
    }
};

TEST_F(Show, ATable) {
    set_text(key, "Modem", "\x1b[2J");
    set_value(key, "First", REG_DWORD, std::string("\x07\0\0\0", 4));
    set_text(key, "Second", std::string(1100, 'x'));
    set_text(key, "ServerList", "");
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.out, R"(Agent
  key      HKEY_LOCAL_MACHINE\SOFTWARE\Tavrin\Agent
  service  AgentService (running, automatic)
  [One]
    AgentName   String          web1
    Port        Integer         5000
    First       String          7 (REG_DWORD)
  [Two]
    Second      String          (longer than 1,024 bytes)
    Flag        Boolean         true
    Colour      Options         red
    ServerList  ServerList      (empty)
    Modem       COM             \033[2J
    Subkey      RemoveKey       (no value)
    Event       SignalEvent     (no value)
                ConnectionTest  (no value)
)");
}

TEST_F(Show, AnEmptyLineBetweenConfigurations) {
    add_configuration("Old", "SOFTWARE\\Tavrin\\Agent\n$A\nPort\nH\n");
    EXPECT_THAT(run({"show"}).out, HasSubstr("(no value)\n\nOld\n"));
}

TEST_F(Show, EntriesInNoGroup) {
    add_configuration("Old", "SOFTWARE\\Tavrin\\Agent\n$A\nPort\nH\n!G\n$B\nNew\nH\n");
    EXPECT_EQ(run({"show", "Old"}).out, "Old\n  key      HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent\n"
                                        "    Port  Integer  5000\n  [G]\n    New   Integer  (not set)\n");
}

TEST_F(Show, WhatShowPrintsIsWhatApplyReads) {
    set_text(key, "AgentName", "Z\xFCrich \"1\"");
    set_text(key, "Flag", "yes");
    set_text(key, "Second", std::string(1100, 'x'));
    const Ended shown = run({"show", "agent", "--json"});
    EXPECT_EQ(shown.code, ctl::ExitCode::success);
    EXPECT_THAT(shown.out, HasSubstr("\"value\": \"Z\\u00fcrich \\\"1\\\"\""));
    EXPECT_THAT(shown.out, HasSubstr("\"Modem\": {\n          \"value\": null,"));
    const Ended applied = apply(shown.out, {"--exit-code"});
    EXPECT_EQ(applied.code, ctl::ExitCode::success) << applied.err;
    EXPECT_EQ(applied.out, "nothing to do: all values match\n");
}

/// PowerShell 5.1 decodes a program's output by a code page, splits it into lines, and passes ASCII to the
/// next program.
std::string through_powershell(const std::string& printed) {
    std::string piped;
    for (const char byte : printed) {
        if (byte == '\n')
            piped += '\r';
        piped += static_cast<signed char>(byte) < 0 ? '?' : byte;
    }
    return piped;
}

TEST_F(Show, AStateSurvivesPowerShell) {
    set_text(key, "AgentName", "Z\xFCrich");
    const Ended shown = run({"show", "--json"});
    set_text(key, "AgentName", "other");
    EXPECT_EQ(apply(through_powershell(shown.out)).code, ctl::ExitCode::success);
    EXPECT_EQ(text("AgentName"), "Z\xFCrich");
}

TEST_F(Show, TheTimeOfAReport) {
    const auto report = nlohmann::json::parse(run({"show", "--json"}).out);
    EXPECT_THAT(report["machine"]["time"].get<std::string>(),
                testing::MatchesRegex("20[0-9]{2}-[01][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-6][0-9]Z"));
}

TEST_F(Show, ActionsAreListedInJson) {
    const auto report = nlohmann::json::parse(run({"show", "--json"}).out);
    EXPECT_EQ(report["configurations"]["Agent"]["actions"].dump(),
              R"([{"group":"Two","kind":"RemoveKey","name":"Subkey","title":"Gone"},)"
              R"({"group":"Two","kind":"SignalEvent","name":"Event","title":"Shout"},)"
              R"({"group":"Two","kind":"ConnectionTest","name":"","title":"Test"}])");
}

TEST_F(Show, AStateOfAnotherMachineMakesThisOneTheSame) {
    const Ended shown = run({"show", "--json"});
    change({"set", "Agent", "Port=1", "First=x", "AgentName=other"});
    EXPECT_EQ(apply(shown.out).code, ctl::ExitCode::success);
    EXPECT_EQ(without_machine(run({"show", "--json"}).out), without_machine(shown.out));
}

TEST_F(Show, AKeyThatIsNotThereHasNoValues) {
    delete_key(key);
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.err,
                HasSubstr("warning: the key HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent does not exist"));
    EXPECT_THAT(done.out, HasSubstr("Port        Integer         (not set)\n"));
}

TEST_F(Show, AMissingSpecFileIsTold) {
    set_text("SOFTWARE\\Tavrin\\TRConfig", "Lost", "/nowhere.spec");
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(done.err, "tavrinctl: warning: /nowhere.spec: the spec file cannot be opened\n");
}

TEST_F(Show, ASpecFileWhosePathHasVariablesIsNotFoundAndWhy) {
    const std::string path = "%Folder%/x.spec";
    set_value("SOFTWARE\\Tavrin\\TRConfig", "Lost", REG_EXPAND_SZ, path + '\0');
    EXPECT_EQ(run({"show"}).err,
              "tavrinctl: warning: %Folder%/x.spec: the spec file cannot be opened; its registry value is a "
              "REG_EXPAND_SZ, whose names such as %ProgramFiles% are not replaced\n");
}

TEST_F(Show, ASpecFileOfOneLineIsRefusedAsCheckRefusesIt) {
    add_configuration("Bad", "SOFTWARE\\Tavrin\\Agent\rBad\r!G\r$A\rPort\rH\rInteger\r");
    const std::string words = "the lines end with a carriage return alone, so the file is read as one line; "
                              "end them with LF or CR LF\n";
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.err, "tavrinctl: " + scratch.path_of("Bad.spec") + ":1: " + words);
    const Ended checked = run({"check", scratch.path_of("Bad.spec")});
    EXPECT_EQ(checked.code, ctl::ExitCode::invalid);
    EXPECT_EQ(checked.out, scratch.path_of("Bad.spec") + ":1: error: " + words);
}

TEST_F(Show, NoListOfSpecFiles) {
    delete_key("SOFTWARE\\Tavrin\\TRConfig");
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.err,
              "tavrinctl: no configuration is registered on this machine (HKLM\\SOFTWARE\\Tavrin\\TRConfig "
              "does not exist)\n");
}

TEST_F(Show, AnInstanceForDsc) {
    EXPECT_EQ(
        dsc("get", R"({"name":"Agent"})").out,
        R"({"name":"Agent","service":"AgentService","values":{"AgentName":"web1","Port":"5000","First":null,)"
        R"("Second":null,"Flag":"true","Colour":"red","ServerList":null,"Modem":null}})"
        "\n");
    EXPECT_EQ(dsc("export", "").out, dsc("get", R"({"name":"agent"})").out);
}

TEST_F(Show, TheSchemaOfADscInstance) {
    const auto schema = nlohmann::json::parse(run({"dsc", "schema"}).out);
    EXPECT_EQ(schema["required"].dump(), R"(["name"])");
    const auto& properties = schema["properties"];
    EXPECT_EQ(properties["name"]["type"], "string");
    EXPECT_EQ(properties["service"]["readOnly"], true);
    EXPECT_EQ(properties["values"]["additionalProperties"].dump(),
              R"({"type":["string","integer","boolean","null"]})");
    EXPECT_EQ(properties["_inDesiredState"]["readOnly"], true);
}

TEST_F(Show, DscTestsAndSets) {
    const std::string desired = R"({"name":"Agent","values":{"Port":5001,"Flag":true}})";
    const Ended tested = dsc("test", desired);
    EXPECT_EQ(tested.code, ctl::ExitCode::success);
    EXPECT_EQ(tested.out,
              R"({"name":"Agent","service":"AgentService","values":{"Port":"5000","Flag":"true"},)"
              R"("_inDesiredState":false})"
              "\n");
    const std::string after =
        R"({"name":"Agent","service":"AgentService","values":{"Port":"5001","Flag":"true"}})";
    EXPECT_EQ(dsc("set", desired, {"--what-if"}).out, after + "\n[\"values\"]\n");
    EXPECT_EQ(text("Port"), "5000");
    const Ended set = dsc("set", desired);
    EXPECT_EQ(set.code, ctl::ExitCode::success);
    EXPECT_EQ(set.out, after + "\n[\"values\"]\n");
    EXPECT_THAT(set.err, HasSubstr("{\"info\":\"service AgentService restarted\"}\n"));
    EXPECT_EQ(text("Port"), "5001");
    EXPECT_EQ(dsc("set", desired).out, after + "\n[]\n");
    EXPECT_THAT(dsc("test", desired).out, HasSubstr("\"_inDesiredState\":true"));
}

TEST_F(Show, DscTellsTheTypeOfAValueThatIsNoText) {
    set_value(key, "First", REG_DWORD, std::string("\x07\0\0\0", 4));
    EXPECT_THAT(dsc("get", R"({"name":"Agent"})").out,
                HasSubstr(R"("First":{"type":"REG_DWORD","octets":"07000000"},"Second":null)"));
}

TEST_F(Show, DscRefusesInJson) {
    const Ended done = dsc("set", R"({"name":"Agent","values":{"Port":"x"}})");
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(
        done.err,
        "{\"error\":\"nothing was written:\\n  Agent: Port: \\\"x\\\" is invalid: not a whole number\"}\n");
    for (const char* const operation : {"get", "set", "test"}) {
        const Ended nameless = dsc(operation, "{}");
        EXPECT_EQ(nameless.code, ctl::ExitCode::invalid);
        EXPECT_EQ(nameless.out, "");
        EXPECT_EQ(nameless.err, "{\"error\":\"the instance has no member \\\"name\\\"\"}\n");
        EXPECT_THAT(dsc(operation, R"({"name":""})").err,
                    HasSubstr("there is no configuration \\\"\\\"\"}\n"));
    }
    EXPECT_EQ(dsc("get", R"({"name":"Agent","more":1})").code, ctl::ExitCode::invalid);
}

TEST_F(Show, DscRefusesACommandLineInJson) {
    const Ended done = dsc("nothing", "");
    EXPECT_EQ(done.code, ctl::ExitCode::usage);
    EXPECT_EQ(done.out, "");
    EXPECT_THAT(done.err,
                testing::StartsWith(R"({"error":"\"nothing\" is not valid for dsc\nusage: tavrinctl dsc )"));
    EXPECT_THAT(run({"dsc", "get", "--bogus"}).err,
                testing::StartsWith("{\"error\":\"unknown option --bogus"));
}

} // namespace
