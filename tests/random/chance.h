#pragma once
/// Random decisions that come out alike on every platform for the same seed.
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace random_user {

class Chance {
public:
    explicit Chance(std::uint32_t seed) : generator_(seed) {}

    /// 0 to `count` - 1.
    unsigned below(std::size_t count) { return static_cast<unsigned>(generator_() % count); }
    bool percent(unsigned share) { return below(100) < share; }
    template <typename Value> const Value& pick(const std::vector<Value>& from) {
        return from[below(from.size())];
    }

private:
    std::mt19937 generator_;
};

} // namespace random_user
