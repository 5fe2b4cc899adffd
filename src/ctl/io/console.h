#pragma once
/// The two streams: data goes to the standard output, messages to the standard error stream, both in UTF-8.
#include <string_view>

namespace ctl {

/// Called once, before everything else.
void begin_output();
/// Writes data to the standard output. Throws Failure if that fails, for example because a disk is full.
void print(std::string_view data);
/// Flushes the standard output. Throws Failure if that fails, unless `print` has thrown before.
void finish_output();

enum class Level { error, warning, info };

/// Prints a message on a separate line. Information about the progress of a long step is for people: without
/// `is_verbose` it is printed only on a terminal, because callers such as PowerShell take every line on the
/// standard error stream for an error.
void say(std::string_view message, Level level = Level::error);
/// How messages are printed from now on.
struct MessageForm {
    /// As `{"error": "..."}`, information included, for a program that reads them.
    bool is_json = false;
    /// Information even if the standard error stream is not a terminal.
    bool is_verbose = false;
};
void set_message_form(MessageForm form);

} // namespace ctl
