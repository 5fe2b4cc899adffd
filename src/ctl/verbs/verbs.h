#pragma once
/// Every verb of both programs. Each is defined, with its help, in the file that runs it; a program for Linux
/// has none of those that need a registry or services and says so, in linux/only_on_windows.cpp.
#include "ctl/arguments.h"

#include <limits>
#include <span>

namespace ctl {

/// In the order of --help.
std::span<const Verb* const> verbs();

extern const Verb check_verb;
extern const Verb show_verb;
extern const Verb set_verb;
extern const Verb apply_verb;
extern const Verb restore_verb;
extern const Verb test_verb;
extern const Verb scan_verb;
extern const Verb template_verb;
extern const Verb diff_verb;
extern const Verb dsc_verb;
extern const Verb completion_verb;

inline constexpr std::size_t any_number = std::numeric_limits<std::size_t>::max();

} // namespace ctl
