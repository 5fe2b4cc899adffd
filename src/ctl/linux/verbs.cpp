#include "ctl/program.h"

#include "ctl/verbs.h"

namespace ctl {

/// Those that need neither registry nor services.
std::span<const Verb> verbs() {
    static constexpr Verb here[] = {check_verb, template_verb};
    return here;
}

} // namespace ctl
