#include "ctl/program.h"
#include "ctl/verbs/verbs.h"

namespace ctl {

const Verb show_verb{.name = "show"};
const Verb set_verb{.name = "set"};
const Verb apply_verb{.name = "apply"};
const Verb restore_verb{.name = "restore"};
const Verb test_verb{.name = "test"};
const Verb scan_verb{.name = "scan"};
const Verb dsc_verb{.name = "dsc"};

} // namespace ctl

int main(int count, char** words) { return static_cast<int>(ctl::run_program({words + 1, words + count})); }
