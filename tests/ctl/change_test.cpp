// set and apply over the substitute: what is written, what is refused, and how it ends.
#include "ctl/program_run.h"

#include "ctl/failure.h"
#include "substitute/control.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using testing::HasSubstr;

class Change : public Program {};

/// Of the spec file "Agent", as sha256sum has it.
constexpr const char* sha256_of_spec = "1c655a2958b04ad1f5d7635bfe18908c185051667861da7a32b78c8b3656bfd8";

TEST_F(Change, WritesWhatDiffersAndRestartsTheService) {
    const Ended done = change({"set", "Agent", "Port=5001", "AgentName=web1"});
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_EQ(text("Port"), "5001");
    EXPECT_EQ(substitute::call_count("RegSetValueExA"), 5 + 1)
        << "what the test wrote before, and the one value";
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 1);
    EXPECT_EQ(substitute::service_counts("AgentService").starts, 1);
    EXPECT_EQ(done.err, "");
    EXPECT_THAT(done.out, HasSubstr("\n  service AgentService restarted\n"));
}

TEST_F(Change, ALineForEachValueThatChanges) {
    set_value(key, "Second", REG_DWORD, std::string("\x07\0\0\0", 4));
    set_text(key, "Modem", "COM1");
    const std::string state = R"({"schema":1,"configurations":{"Agent":{"values":{"AgentName":"\u001b[2J",
        "Port":5000,"First":"","Second":"7","Flag":false,"Modem":null}}}})";
    const std::string lines = "Agent\n"
                              "  AgentName: web1 -> \\033[2J\n"
                              "  First: (not set) -> (empty)\n"
                              "  Second: 7 (REG_DWORD) -> 7\n"
                              "  Flag: true -> false\n"
                              "  Modem: COM1 -> (removed)\n";
    EXPECT_EQ(apply(state, {"--what-if"}).out, "what-if: nothing is written\n" + lines);
    const Ended done = apply(state);
    EXPECT_EQ(done.out, "previous values saved to " + backup_path() + "\n" + lines +
                            "  service AgentService restarted\n");
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(apply(state).out, "nothing to do: all values match\n");
    EXPECT_EQ(apply(state, {"--what-if"}).out,
              "what-if: nothing is written\nnothing to do: all values match\n");
}

TEST_F(Change, TellsOfLongStepsWhenAsked) {
    const Ended done = change({"set", "Agent", "Port=5001", "--json", "--verbose"});
    EXPECT_EQ(done.err, "tavrinctl: stopping service AgentService\n"
                        "tavrinctl: starting service AgentService\n");
}

TEST_F(Change, AReportThatIsLostIsNoReasonToHideWhatWasDone) {
    substitute::set_service("AgentService", {.start_error = ERROR_SERVICE_DISABLED});
    const Ended done = change_unheard({"set", "Agent", "Port=5001"});
    EXPECT_EQ(done.code, ctl::ExitCode::not_restarted);
    EXPECT_THAT(done.err,
                HasSubstr("tavrinctl: cannot write to the standard output; the values were written, "
                          "the previous ones saved to " +
                          backup_path() + "\n"));
    substitute::set_service("AgentService", {});
    EXPECT_EQ(change_unheard({"set", "Agent", "Port=5002"}).code, ctl::ExitCode::failed);
    EXPECT_EQ(text("Port"), "5002");
}

TEST_F(Change, ReportsEachValue) {
    const Ended done = change({"set", "Agent", "Port=5001", "AgentName=web1", "--json"});
    EXPECT_THAT(
        without_machine(done.out),
        testing::StartsWith("{\n  \"schema\": 1,\n  \"specFiles\": [\n    {\n      \"path\": \"" +
                            scratch.path_of("Agent.spec") + "\",\n      \"sha256\": \"" + sha256_of_spec +
                            "\"\n    }\n  ],\n  \"changed\": true,\n  \"whatIf\": false,\n  \"backup\": \""));
    EXPECT_THAT(done.out, testing::EndsWith(R"(  "configurations": {
    "Agent": {
      "service": "AgentService",
      "serviceState": "running",
      "startType": "automatic",
      "restartPending": false,
      "restarted": true,
      "changed": true,
      "values": {
        "AgentName": {
          "before": "web1",
          "after": "web1",
          "changed": false
        },
        "Port": {
          "before": "5000",
          "after": "5001",
          "changed": true
        }
      }
    }
  }
}
)"));
}

TEST_F(Change, ASecondRunChangesNothingAndSaysSo) {
    change({"set", "Agent", "Port=5001", "Flag=FALSE", "Colour=green", "Modem="});
    EXPECT_EQ(text("Port"), "5001");
    EXPECT_EQ(text("Flag"), "false");
    EXPECT_EQ(text("Modem"), "");
    const int writes = substitute::call_count("RegSetValueExA");
    const Ended second = change({"set", "Agent", "Port=5001", "Flag=FALSE", "Colour=green", "Modem="});
    EXPECT_EQ(second.code, ctl::ExitCode::success);
    EXPECT_EQ(second.out, "nothing to do: all values match\n");
    EXPECT_EQ(substitute::call_count("RegSetValueExA"), writes);
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 1);
}

TEST_F(Change, KeepsTheValuesAsTheyWere) {
    set_value(key, "Colour", REG_DWORD, std::string("\x88\x13\0\0", 4));
    change({"set", "Agent", "Port=5001", "Flag=true", "Colour=green", "First=new"});
    EXPECT_EQ(backup(), "Windows Registry Editor Version 5.00\r\n\r\n"
                        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent]\r\n"
                        "\"Port\"=\"5000\"\r\n\"First\"=-\r\n\"Colour\"=dword:00001388\r\n");
}

TEST_F(Change, TellsTheBackupsPath) {
    const Ended done = change({"set", "Agent", "Port=5001", "--json"});
    const std::string path = scratch.path_of("backup") + "/tavrinctl-";
    EXPECT_THAT(done.out, HasSubstr("\"backup\": \"" + path));
    EXPECT_THAT(backup_path(), testing::StartsWith(path));
}

TEST_F(Change, TellsTheWholePathOfABackup) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.path_of("."));
    const Ended done = run({"set", "Agent", "Port=5001", "--backup", "backup"});
    std::filesystem::current_path(before);
    EXPECT_THAT(done.out, HasSubstr("previous values saved to " + scratch.path_of("backup") + "/tavrinctl-"));
}

TEST_F(Change, WithoutABackupNothingIsWritten) {
    const Ended done = run({"set", "Agent", "Port=5001", "--backup", scratch.path_of("Agent.spec")});
    EXPECT_EQ(done.code, ctl::ExitCode::failed);
    EXPECT_THAT(done.err, HasSubstr("cannot create the backup folder "));
    EXPECT_EQ(text("Port"), "5000");
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
}

TEST_F(Change, WhatIfWritesNothing) {
    const Ended done = change({"set", "Agent", "Port=5001", "--what-if", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.out, HasSubstr("\"changed\": true,\n  \"whatIf\": true,\n  \"backup\": null"));
    EXPECT_THAT(done.out, HasSubstr("\"after\": \"5001\""));
    EXPECT_EQ(text("Port"), "5000");
    EXPECT_EQ(backup(), "");
}

TEST_F(Change, OnlyWithExitCodeDoesADifferenceShow) {
    EXPECT_EQ(change({"set", "Agent", "Port=5001", "--what-if", "--exit-code"}).code, ctl::ExitCode::drift);
    EXPECT_EQ(change({"set", "Agent", "Port=5001", "--exit-code"}).code, ctl::ExitCode::drift);
    EXPECT_EQ(change({"set", "Agent", "Port=5001", "--exit-code"}).code, ctl::ExitCode::success);
}

TEST_F(Change, NamesAndTitles) {
    EXPECT_EQ(change({"set", "aGENT", "pORT=1", "Name=two=words", "Second=s"}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("Port"), "1");
    EXPECT_EQ(text("AgentName"), "two=words");
    EXPECT_EQ(text("Second"), "s");
}

TEST_F(Change, EverythingIsLookedAtBeforeTheFirstWrite) {
    const Ended done = change({"set", "Agent", "AgentName=new", "Port=x", "Flag=yes", "Colour=blue",
                               "ServerList=a:b", "Nothing=1", "Twice=1", "Gone=1", "Event=1", "Test=1",
                               "port=3", "Modem=\xE2\x82\xAC\xE2\x98\x83"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(
        done.err,
        "tavrinctl: nothing was written:\n"
        "  Agent: Port: \"x\" is invalid: not a whole number\n"
        "  Agent: Flag: \"yes\" is invalid: neither \"true\" nor \"false\"\n"
        "  Agent: Colour: \"blue\" is invalid: not one of the options \"red\", \"green\"\n"
        "  Agent: ServerList: \"a:b\" is invalid: the port \"b\" of the server \"a\" is not a number from 0 "
        "to 65535\n"
        "  Agent: Nothing: unknown value; \"tavrinctl show\" lists them all\n"
        "  Agent: Twice: several entries have this title; use a value name\n"
        "  Agent: Gone: this is a RemoveKey, which has no value that could be set; use the window\n"
        "  Agent: Event: this is a SignalEvent, which has no value that could be set; use the window\n"
        "  Agent: Test: this is a ConnectionTest, which has no value that could be set; use the window\n"
        "  Agent: port: the value is given twice\n"
        "  Agent: Modem: the text does not fit the machine's code page 1252\n");
    EXPECT_EQ(text("AgentName"), "web1");
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
}

TEST_F(Change, TwoEntriesOfOneValueAreOneValue) {
    add_configuration("Odd", "SOFTWARE\\Tavrin\\Agent\nOdd\n!G\n$A\nV\nH\nString\n$B\nv\nH\nString\n");
    const Ended done = change({"set", "Odd", "A=1", "B=2"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(done.err, HasSubstr("Odd: B: the value is given twice\n"));
    EXPECT_EQ(change({"set", "Odd", "B=2"}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("V"), "2");
}

TEST_F(Change, LengthsCountInTheCodePage) {
    const std::string longest(1023, 'x');
    EXPECT_EQ(change({"set", "Agent", "AgentName=" + longest}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("AgentName"), longest);
    const Ended longer = change({"set", "Agent", "AgentName=" + longest + "y"});
    EXPECT_EQ(longer.code, ctl::ExitCode::invalid);
    EXPECT_THAT(longer.err, HasSubstr("is invalid: longer than 1023 bytes"));
    std::string umlauts;
    for (int i = 0; i < 1023; ++i)
        umlauts += "\xC3\xBC";
    EXPECT_EQ(change({"set", "Agent", "AgentName=" + umlauts}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("AgentName"), std::string(1023, '\xFC'));
}

TEST_F(Change, WhatTheToolCouldNotHaveWrittenMayStay) {
    set_text(key, "Flag", "yes");
    set_text(key, "Port", "0x10");
    EXPECT_THAT(change({"set", "Agent", "Flag=yes", "Port=0x10"}).out, HasSubstr("nothing to do"));
    change({"set", "Agent", "Port=16"});
    EXPECT_EQ(text("Port"), "16");
}

TEST_F(Change, AValueOfAnotherTypeIsNoText) {
    set_value(key, "Port", REG_DWORD, std::string("\x88\x13\0\0", 4));
    const Ended done = change({"set", "Agent", "Port=5000", "--json"});
    EXPECT_THAT(done.out, HasSubstr("\"before\": {\n            \"type\": \"REG_DWORD\",\n"
                                    "            \"octets\": \"88130000\"\n          },\n"
                                    "          \"after\": \"5000\",\n          \"changed\": true"));
    EXPECT_EQ(text("Port"), "5000");
}

TEST_F(Change, AnExpandableTextIsWrittenAsAPlainOne) {
    set_value(key, "AgentName", REG_EXPAND_SZ, std::string("web1\0", 5));
    EXPECT_THAT(change({"set", "Agent", "AgentName=web1", "--json"}).out,
                HasSubstr("\"before\": {\n            \"value\": \"web1\",\n"
                          "            \"type\": \"REG_EXPAND_SZ\"\n          },\n"
                          "          \"after\": \"web1\",\n          \"changed\": true"));
    EXPECT_EQ(text("AgentName"), "web1");
}

TEST_F(Change, AValueThatIsTooLongIsNotEmpty) {
    set_text(key, "AgentName", std::string(2000, 'x'));
    EXPECT_EQ(change({"set", "Agent", "AgentName="}).code, ctl::ExitCode::success);
    EXPECT_EQ(text("AgentName"), "");
    EXPECT_THAT(backup(), HasSubstr("\"AgentName\"=\"" + std::string(2000, 'x') + "\"\r\n"));
}

TEST_F(Change, AbsentAndEmptyAreTwoThings) {
    const Ended done = change({"set", "Agent", "First=", "--json"});
    EXPECT_THAT(done.out,
                HasSubstr("\"before\": null,\n          \"after\": \"\",\n          \"changed\": true"));
    EXPECT_EQ(text("First"), "");
}

TEST_F(Change, NullRemovesAValue) {
    const std::string state =
        R"({"schema":1,"configurations":{"Agent":{"values":{"Port":null,"First":null}}}})";
    const Ended done = apply(state, {"--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_FALSE(raw_value(key, "Port"));
    EXPECT_THAT(done.out,
                HasSubstr("\"before\": \"5000\",\n          \"after\": null,\n          \"changed\": true"));
    EXPECT_THAT(apply(state).out, HasSubstr("nothing to do"));
}

TEST_F(Change, JsonsOwnNumbersAndTruthValuesAreForTheirKinds) {
    EXPECT_EQ(apply(R"({"schema":1,"configurations":{"Agent":{"values":{"Port":7,"Flag":false}}}})").code,
              ctl::ExitCode::success);
    EXPECT_EQ(text("Port"), "7");
    EXPECT_EQ(text("Flag"), "false");
    const Ended refused =
        apply(R"({"schema":1,"configurations":{"Agent":{"values":{"Flag":1,"AgentName":5,"Port":true}}}})");
    EXPECT_EQ(refused.code, ctl::ExitCode::invalid);
    EXPECT_EQ(refused.err,
              "tavrinctl: nothing was written:\n"
              "  Agent: Flag: expected true or false for the kind Boolean, found the number 1\n"
              "  Agent: AgentName: expected a text in quotes for the kind String, found the number 5\n"
              "  Agent: Port: expected a whole number for the kind Integer, found the boolean true\n");
}

TEST_F(Change, SerialPortsAreThoseOfTheMachineOrNumbered) {
    make_key("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    set_text("HARDWARE\\DEVICEMAP\\SERIALCOMM", "Device", "CNCA0");
    for (const std::string port : {"CNCA0", "COM1", "COM256", ""})
        EXPECT_EQ(change({"set", "Agent", "Modem=" + port}).code, ctl::ExitCode::success) << port;
    for (const std::string port : {"banana", "COM", "COM0", "COM1x", "com1"}) {
        const Ended refused = change({"set", "Agent", "Modem=" + port});
        EXPECT_EQ(refused.code, ctl::ExitCode::invalid);
        EXPECT_THAT(refused.err, HasSubstr("Modem: \"" + port + "\" is invalid: not a serial port\n"));
    }
}

TEST_F(Change, AKeyThatDoesNotExistIsNotMade) {
    delete_key(key);
    const Ended done = change({"set", "Agent", "Port=1"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(done.err, HasSubstr("the key HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent does not exist"));
    EXPECT_FALSE(key_exists(key));
}

TEST_F(Change, UnknownConfigurations) {
    EXPECT_EQ(change({"set", "Nobody", "Port=1"}).code, ctl::ExitCode::invalid);
    EXPECT_EQ(run({"show", "Nobody"}).code, ctl::ExitCode::invalid);
    EXPECT_EQ(change({"set", "Agent", "Port"}).code, ctl::ExitCode::usage);
    EXPECT_EQ(change({"set", "Agent", "=1"}).code, ctl::ExitCode::usage);
}

TEST_F(Change, WithTheKeyClosedNothingHappens) {
    substitute::deny_key(HKEY_LOCAL_MACHINE, key);
    const Ended done = change({"set", "Agent", "Port=5001"});
    EXPECT_EQ(done.code, ctl::ExitCode::access_denied);
    EXPECT_THAT(done.err,
                HasSubstr("access to the key HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Agent is denied"));
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
}

TEST_F(Change, WithTheKeyClosedForWritingNothingHappens) {
    // The list of spec files, once for itself and once to be read, the key to look, the key to write.
    substitute::fail_call("RegOpenKeyExA", 4, ERROR_ACCESS_DENIED);
    EXPECT_EQ(change({"set", "Agent", "Port=5001"}).code, ctl::ExitCode::access_denied);
    EXPECT_EQ(text("Port"), "5000");
    EXPECT_EQ(backup(), "");
    EXPECT_EQ(substitute::service_counts("AgentService").stops, 0);
}

TEST_F(Change, WithTheListOfSpecFilesClosedNothingIsKnown) {
    substitute::deny_key(HKEY_LOCAL_MACHINE, "SOFTWARE\\Tavrin\\TRConfig");
    EXPECT_EQ(run({"show"}).code, ctl::ExitCode::access_denied);
}

TEST_F(Change, AnAgentThatIsNotInstalledNeedsNoRestart) {
    substitute::remove_service("AgentService");
    const Ended done = change({"set", "Agent", "Port=5001", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.err, HasSubstr("warning: there is no service AgentService to restart"));
    EXPECT_THAT(done.out, HasSubstr("\"restarted\": false"));
    EXPECT_EQ(text("Port"), "5001");
}

TEST_F(Change, WithoutARestartTheServiceIsLeftAlone) {
    const Ended done = change({"set", "Agent", "Port=5001", "--restart", "never", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_EQ(substitute::call_count("ControlService"), 0);
    EXPECT_EQ(substitute::call_count("StartServiceA"), 0);
    EXPECT_THAT(done.out, HasSubstr("\"restarted\": false"));
}

TEST_F(Change, AServiceThatTakesItsTimeIsWaitedFor) {
    substitute::set_service("AgentService", {.stop_time = 2500, .start_time = 4000});
    const Ended done = change({"set", "Agent", "Port=5001"});
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_EQ(substitute::service_state("AgentService"), SERVICE_RUNNING);
}

TEST_F(Change, AWriteThatFailsStopsNothingForEver) {
    const int before = substitute::call_count("RegSetValueExA");
    substitute::fail_call("RegSetValueExA", 2, ERROR_NOT_ENOUGH_MEMORY);
    const Ended done = change({"set", "Agent", "AgentName=new", "Port=5001", "Colour=green", "--json"});
    EXPECT_EQ(done.code, ctl::ExitCode::failed);
    EXPECT_THAT(done.err, HasSubstr("Cannot write key Port; values that were already written stay"));
    EXPECT_EQ(substitute::call_count("RegSetValueExA"), before + 2);
    EXPECT_EQ(text("AgentName"), "new");
    EXPECT_EQ(text("Port"), "5000");
    EXPECT_EQ(substitute::service_state("AgentService"), SERVICE_RUNNING);
    EXPECT_THAT(done.out,
                HasSubstr("\"AgentName\": {\n          \"before\": \"web1\",\n          \"after\": \"new\",\n"
                          "          \"changed\": true"));
    EXPECT_THAT(done.out, HasSubstr("\"after\": \"5001\",\n          \"changed\": false"));
    EXPECT_EQ(change({"set", "Agent", "AgentName=new", "Port=5001", "Colour=green"}).code,
              ctl::ExitCode::success);
}

TEST_F(Change, TwoConfigurationsAreOneState) {
    add_configuration("Old", "SOFTWARE\\Tavrin\\Agent\n$Retries\nRetries\nH\n");
    const Ended done = apply(
        R"({"schema":1,"configurations":{"Agent":{"values":{"Port":"1"}},"old":{"values":{"Retries":2}}}})");
    EXPECT_EQ(done.code, ctl::ExitCode::success) << done.err;
    EXPECT_EQ(text("Retries"), "2");
    const Ended wrong =
        apply(R"({"schema":1,"configurations":{"Agent":{"values":{"Port":"9"}},"Nobody":{"values":{}}}})");
    EXPECT_EQ(wrong.code, ctl::ExitCode::invalid);
    EXPECT_EQ(wrong.err, "tavrinctl: nothing was written:\n  there is no configuration \"Nobody\"\n");
    EXPECT_EQ(text("Port"), "1");
}

TEST_F(Change, NothingIsLeftOpen) {
    change({"set", "Agent", "Port=5001"});
    change({"set", "Agent", "Port=x"});
    EXPECT_EQ(substitute::open_keys(), 0);
    EXPECT_EQ(substitute::open_service_handles(), 0);
}

TEST_F(Change, NoBoxIsEverShown) {
    add_configuration("Odd", "SOFTWARE\\Tavrin\\Agent\nOdd\n!G\n$A\nV\nH\nNothing\n$B\nW\nH\nString\n");
    const Ended done = change({"set", "Odd", "W=1"});
    EXPECT_EQ(done.code, ctl::ExitCode::success);
    EXPECT_THAT(done.err, HasSubstr("Odd.spec:7: Unknown type: \"Nothing\", for subspec A\n"));
    EXPECT_TRUE(substitute::shown_boxes().empty());
}

TEST_F(Change, ASpecFileThatCannotBeReadByTheWindowIsRefused) {
    add_configuration("Bad", "SOFTWARE\\Tavrin\\Agent\nBad\nOne\nTwo\n");
    const Ended done = run({"show"});
    EXPECT_EQ(done.code, ctl::ExitCode::invalid);
    EXPECT_THAT(done.err, HasSubstr("Bad.spec:4: Parse error: line \"Two\" not group start\n"));
}

} // namespace
