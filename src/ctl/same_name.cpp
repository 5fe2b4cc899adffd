#include "ctl/same_name.h"

#include <algorithm>

namespace ctl {
namespace {

char folded(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; }

} // namespace

bool same_name(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return folded(left) == folded(right); });
}

} // namespace ctl
