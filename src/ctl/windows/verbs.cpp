#include "ctl/program.h"

#include "ctl/verbs.h"

namespace ctl {

std::span<const Verb> verbs() {
    static constexpr Verb all[] = {check_verb, template_verb};
    return all;
}

} // namespace ctl
