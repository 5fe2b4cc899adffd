#pragma once
/// The two streams: data goes to the standard output, messages to the standard error stream, both in UTF-8.
#include <string_view>

namespace ctl {

/// Called once, before anything is printed.
void begin_output();
/// Adds data to the standard output. Throws Failure when it does not get there, as on a full disk.
void print(std::string_view data);
/// Makes sure that all data got there. Throws Failure otherwise, unless `print` has thrown it before.
void finish_output();

enum class Level { error, warning, info };

/// Prints a message as a line of its own. Information (what a long step does) is for people: without
/// `is_verbose` it is printed on a terminal alone, because callers such as PowerShell take every line on the
/// standard error stream for an error.
void say(std::string_view message, Level level = Level::error);
/// How messages are printed from now on.
struct MessageForm {
    /// As `{"error": "..."}` a line, and all of them, for a caller that reads them.
    bool is_json = false;
    /// Information also where the standard error stream is not a terminal.
    bool is_verbose = false;
};
void set_message_form(MessageForm form);

} // namespace ctl
