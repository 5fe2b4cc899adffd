#include "ctl/io/console.h"

#include "ctl/failure.h"
#include "ctl/io/system.h"

#include "ctl/io/json.h"

#include <cstdio>
#include <string>

namespace ctl {
namespace {

void check(bool written) {
    if (!written)
        throw Failure{failed, "cannot write to the standard output"};
}

bool in_json = false;

const char* name_of(Level level) {
    switch (level) {
    case Level::error: return "error";
    case Level::warning: return "warn";
    default: return "info";
    }
}

std::string as_json(std::string_view message, Level level) { return to_line({{name_of(level), message}}); }

std::string as_text(std::string_view message, Level level) {
    return std::string("tavrinctl: ") + (level == Level::warning ? "warning: " : "") + std::string(message) +
           "\n";
}

} // namespace

void print(std::string_view data) { check(std::fwrite(data.data(), 1, data.size(), stdout) == data.size()); }

void finish_output() { check(std::fflush(stdout) == 0 && std::ferror(stdout) == 0); }

void say_in_json() { in_json = true; }

void say(std::string_view message, Level level) {
    const std::string line = in_json ? as_json(message, level) : as_text(message, level);
    std::fwrite(line.data(), 1, line.size(), stderr);
}

void show_progress(std::string_view message) {
    if (is_terminal(stderr))
        say(message, Level::info);
}

} // namespace ctl
