#pragma once
/// Every verb of both programs. Each is defined, with its help, in the file that runs it. linux/main.cpp has
/// the verbs that the program for Linux lacks because they need a registry or services.
#include "ctl/arguments.h"

#include <limits>

namespace ctl {

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

/// In the order of --help.
inline constexpr const Verb* verbs[] = {&check_verb,   &show_verb, &set_verb,       &apply_verb,
                                        &restore_verb, &test_verb, &scan_verb,      &template_verb,
                                        &diff_verb,    &dsc_verb,  &completion_verb};

inline constexpr std::size_t any_number = std::numeric_limits<std::size_t>::max();

} // namespace ctl
