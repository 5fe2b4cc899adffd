#include "ctl/io/console.h"

#include "ctl/failure.h"
#include "ctl/io/json.h"
#include "ctl/io/system.h"

#include <cstdio>
#include <string>
#include <utility>

namespace ctl {
namespace {

/// Lost output is reported only once: a caller that catches the failure may end with another exit code.
bool output_is_lost = false;

void check(bool written) {
    if (!written && !std::exchange(output_is_lost, true))
        throw Failure{ExitCode::failed, "cannot write to the standard output"};
}

MessageForm message_form;

const char* name_of(Level level) {
    switch (level) {
    case Level::error: return "error";
    case Level::warning: return "warn";
    default: return "info";
    }
}

bool shows_information() { return message_form.is_json || message_form.is_verbose || is_terminal(stderr); }

std::string as_json(std::string_view message, Level level) { return to_line({{name_of(level), message}}); }

std::string as_text(std::string_view message, Level level) {
    return std::string("tavrinctl: ") + (level == Level::warning ? "warning: " : "") + std::string(message) +
           "\n";
}

} // namespace

void print(std::string_view data) { check(write_text(stdout, data)); }

void finish_output() { check(std::fflush(stdout) == 0 && std::ferror(stdout) == 0); }

void begin_output() {
    message_form = {};
    output_is_lost = false;
}

void set_message_form(MessageForm form) { message_form = form; }

void say(std::string_view message, Level level) {
    if (level == Level::info && !shows_information())
        return;
    const std::string line = message_form.is_json ? as_json(message, level) : as_text(message, level);
    write_text(stderr, line);
}

} // namespace ctl
