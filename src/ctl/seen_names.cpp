#include "ctl/seen_names.h"

#include "ctl/same_name.h"

#include <utility>

namespace ctl {
namespace {

char folded(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte; }

} // namespace

std::size_t SeenNames::add(std::string_view name, std::size_t line) {
    const std::uint32_t hash = hash_of(name);
    Slot& slot = slots_[place_of(name, hash)];
    if (slot.line != 0)
        return slot.line;
    slot = {name, hash, line};
    if (++used_ * 2 > slots_.size())
        grow();
    return 0;
}

/// FNV-1a, ended by a shuffle: the table goes by the lower bits.
std::uint32_t SeenNames::hash_of(std::string_view name) const {
    std::uint32_t hash = 2166136261U;
    for (const char byte : name)
        hash = (hash ^ static_cast<unsigned char>(fold_ ? folded(byte) : byte)) * 16777619U;
    return hash ^ (hash >> 15);
}

bool SeenNames::same(std::string_view one, std::string_view other) const {
    return fold_ ? same_name(one, other) : one == other;
}

std::size_t SeenNames::place_of(std::string_view name, std::uint32_t hash) const {
    const std::size_t last = slots_.size() - 1;
    std::size_t at = hash & last;
    while (slots_[at].line != 0 && (slots_[at].hash != hash || !same(slots_[at].name, name)))
        at = (at + 1) & last;
    return at;
}

void SeenNames::grow() {
    std::vector<Slot> before(slots_.size() * 4);
    std::swap(before, slots_);
    for (const Slot& each : before) {
        if (each.line != 0)
            slots_[place_of(each.name, each.hash)] = each;
    }
}

} // namespace ctl
