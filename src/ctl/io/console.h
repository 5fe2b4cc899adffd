#pragma once
/// The two streams: data goes to the standard output, messages to the standard error stream, both in UTF-8.
#include <string_view>

namespace ctl {

/// Adds data to the standard output. Throws Failure when it does not get there, as on a full disk.
void print(std::string_view data);
/// Makes sure that all data got there; throws Failure otherwise.
void finish_output();

enum class Level { error, warning, info };

/// A message, a line of its own.
void say(std::string_view message, Level level = Level::error);
/// From now on messages are JSON, `{"error": "..."}` a line, for a caller that reads them.
void say_in_json();
/// Shows what a long step does, for whoever sits before a terminal; a redirected stream is spared.
void show_progress(std::string_view message);

} // namespace ctl
