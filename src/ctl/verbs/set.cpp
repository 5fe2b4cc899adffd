#include "ctl/change/change.h"
#include "ctl/failure.h"
#include "ctl/verbs.h"

namespace ctl {
namespace {

/// At the first "=": a value may hold more of them.
WishedValue wished_by(const std::string& word) {
    const std::size_t end = word.find('=');
    if (end == std::string::npos || end == 0)
        throw Failure{usage, "\"" + word + "\" is not NAME=VALUE\nusage: " + usage_of(set_verb)};
    return {word.substr(0, end), word.substr(end + 1)};
}

} // namespace

int set(const Arguments& arguments) {
    WishedConfiguration wished{arguments.operands.front(), {}, {}};
    for (std::size_t i = 1; i < arguments.operands.size(); ++i)
        wished.values.push_back(wished_by(arguments.operands[i]));
    return carry_out_and_report({wished}, arguments);
}

} // namespace ctl
