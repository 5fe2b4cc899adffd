#include "ctl/program_run.h"

#include "ctl/io/encoding.h"
#include "ctl/program.h"
#include "substitute/control.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

constexpr const char* agent = "\\SOFTWARE\\Tavrin\\Agent\nAgent\nAgentService\n"
                              "!One\n$Name\nAgentName\nH\nString\n$Port\nPort\nH\nInteger\n"
                              "$Twice\nFirst\nH\nString\n"
                              "!Two\n$Twice\nSecond\nH\nString\n$Yes\nFlag\nH\nBoolean\n"
                              "$Colour\nColour\nH\nOptions\nred\ngreen\n$Servers\nServerList\nH\nServerList\n"
                              "$Modem\nModem\nH\nCOM\n"
                              "$Gone\nSubkey\nH\nRemoveKey\n$Shout\nEvent\nH\nSignalEvent\n"
                              "$Test\n\nH\nConnectionTest\nName\nName\nServers\nPort\n";

constexpr const char* list = "SOFTWARE\\Tavrin\\TRConfig";

} // namespace

std::string without_machine(const std::string& report) {
    const std::size_t begin = report.find("  \"machine\": {");
    const std::size_t end = report.find("  },\n", begin);
    EXPECT_NE(end, std::string::npos) << report;
    return std::string(report).erase(begin, end + 5 - begin);
}

Program::Program() {
    setenv("TAVRINCTL_DATA", scratch.path_of("data").c_str(), 1);
    make_key(list);
    make_key(key);
    set_text(key, "AgentName", "web1");
    set_text(key, "Port", "5000");
    set_text(key, "Flag", "true");
    set_text(key, "Colour", "red");
    add_configuration("Agent", agent);
    substitute::set_service("AgentService", {});
}

void Program::add_configuration(const std::string& value_name, const std::string& spec) {
    const std::string path = scratch.path_of(value_name + ".spec");
    std::ofstream(path, std::ios::binary) << spec;
    set_text(list, value_name, path);
}

Ended Program::run(const std::vector<std::string>& words) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const ctl::ExitCode code = ctl::run_program(words);
    std::string out = testing::internal::GetCapturedStdout();
    return {code, std::move(out), testing::internal::GetCapturedStderr()};
}

Ended Program::change(std::vector<std::string> words) {
    words.insert(words.end(), {"--backup", scratch.path_of("backup")});
    return run(words);
}

Ended Program::apply(const std::string& state, std::vector<std::string> words) {
    const std::string path = scratch.path_of("state.json");
    std::ofstream(path, std::ios::binary) << state;
    words.insert(words.begin(), {"apply", path});
    return change(std::move(words));
}

Ended Program::change_unheard(std::vector<std::string> words) {
    std::fflush(stdout);
    const int kept = dup(1);
    const int full = open("/dev/full", O_WRONLY);
    dup2(full, 1);
    words.insert(words.end(), {"--backup", scratch.path_of("backup")});
    testing::internal::CaptureStderr();
    const ctl::ExitCode code = ctl::run_program(words);
    dup2(kept, 1);
    close(full);
    close(kept);
    std::clearerr(stdout);
    return {code, {}, testing::internal::GetCapturedStderr()};
}

std::string Program::backup_path() const {
    const std::filesystem::directory_iterator found(scratch.path_of("backup"));
    return found->path().string();
}

std::string Program::backup() const {
    const std::string folder = scratch.path_of("backup");
    if (!std::filesystem::exists(folder))
        return {};
    std::string text;
    for (const auto& each : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(each.path(), std::ios::binary);
        const std::string octets{std::istreambuf_iterator<char>(file), {}};
        text += ctl::from_utf16(octets.substr(2));
    }
    return text;
}
