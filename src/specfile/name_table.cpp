#include "specfile/name_table.h"

#include "base/text.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace {

/// The bit that distinguishes lower-case from upper-case ASCII letters, in each of eight octets. Other
/// characters that differ only in this bit get the same hash, which does no harm.
constexpr std::uint64_t letter_case = 0x2020202020202020U;
constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;

} // namespace

NameTable::NameTable(bool fold, std::size_t expected)
    : fold_(fold), slots_(std::bit_ceil(2 * expected + 16)) {
    seen_.reserve(expected);
}

std::size_t NameTable::add(std::string_view name, std::size_t line) {
    const std::uint32_t hash = hash_of(name);
    Slot& slot = slots_[place_of(name, hash)];
    if (slot.number != 0)
        return seen_[slot.number - 1].line;
    seen_.push_back({name, line});
    slot = {hash, static_cast<std::uint32_t>(seen_.size())};
    if (seen_.size() * 2 > slots_.size())
        grow();
    return 0;
}

std::size_t NameTable::find(std::string_view name) const {
    const Slot& slot = slots_[place_of(name, hash_of(name))];
    return slot.number == 0 ? 0 : seen_[slot.number - 1].line;
}

/// Eight octets at a time.
std::uint32_t NameTable::hash_of(std::string_view name) const {
    const std::uint64_t folding = fold_ ? letter_case : 0;
    std::uint64_t hash = name.size() * multiplier;
    while (!name.empty()) {
        std::uint64_t octets = 0;
        const std::size_t size = std::min(name.size(), sizeof octets);
        std::memcpy(&octets, name.data(), size);
        hash = (hash ^ (octets | folding)) * multiplier;
        hash ^= hash >> 32;
        name.remove_prefix(size);
    }
    return static_cast<std::uint32_t>(hash);
}

bool NameTable::same(std::string_view one, std::string_view other) const {
    return fold_ ? same_ignoring_case(one, other) : one == other;
}

std::size_t NameTable::place_of(std::string_view name, std::uint32_t hash) const {
    const std::size_t last = slots_.size() - 1;
    std::size_t at = hash & last;
    while (slots_[at].number != 0 &&
           (slots_[at].hash != hash || !same(seen_[slots_[at].number - 1].name, name)))
        at = (at + 1) & last;
    return at;
}

void NameTable::grow() {
    std::vector<Slot> before(slots_.size() * 4);
    std::swap(before, slots_);
    const std::size_t last = slots_.size() - 1;
    for (const Slot& each : before) {
        std::size_t at = each.hash & last;
        while (each.number != 0 && slots_[at].number != 0)
            at = (at + 1) & last;
        if (each.number != 0)
            slots_[at] = each;
    }
}
