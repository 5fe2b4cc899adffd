#include "driver/private_memory.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace bench {
namespace {

namespace fs = std::filesystem;

std::string content(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

bool is_number(const std::string& name) { return name.find_first_not_of("0123456789") == std::string::npos; }

/// Arguments end with a zero byte each.
bool runs(const fs::path& process, const std::string& command_line) {
    std::string arguments = content(process / "cmdline");
    while (!arguments.empty() && arguments.back() == '\0')
        arguments.pop_back();
    for (char& character : arguments) {
        if (character == '\0')
            character = ' ';
    }
    return arguments == command_line;
}

double anonymous_bytes(const fs::path& process) {
    constexpr char label[] = "RssAnon:";
    const std::string status = content(process / "status");
    const auto found = status.find(label);
    if (found == std::string::npos)
        throw std::runtime_error("the system does not count anonymous memory");
    return std::stod(status.substr(found + sizeof label - 1)) * 1024;
}

} // namespace

double private_bytes(const std::string& command_line) {
    std::vector<fs::path> processes;
    for (const auto& entry : fs::directory_iterator("Z:\\proc")) {
        if (is_number(entry.path().filename().string()) && runs(entry.path(), command_line))
            processes.push_back(entry.path());
    }
    if (processes.size() != 1)
        throw std::runtime_error("there is not one process of " + command_line);
    return anonymous_bytes(processes.front());
}

} // namespace bench
