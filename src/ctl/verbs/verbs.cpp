#include "ctl/verbs/verbs.h"

namespace ctl {

std::span<const Verb* const> verbs() {
    static constexpr const Verb* all[] = {&check_verb,   &show_verb, &set_verb,       &apply_verb,
                                          &restore_verb, &test_verb, &scan_verb,      &template_verb,
                                          &diff_verb,    &dsc_verb,  &completion_verb};
    return all;
}

} // namespace ctl
