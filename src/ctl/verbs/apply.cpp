#include "ctl/change/change.h"
#include "ctl/change/state_file.h"
#include "ctl/verbs.h"

namespace ctl {

int apply_state(const Arguments& arguments) {
    return carry_out_and_report(read_state_file(arguments.operands.front()), arguments);
}

} // namespace ctl
