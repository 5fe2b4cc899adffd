#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Names met so far, and where: a table that a file with 100,000 entries fills in less time than it is
/// parsed. The names must outlive it.
class NameTable {
public:
    /// With `fold`, ASCII letters of both cases are the same, as in the registry's names. There may be more
    /// names than are expected, but then they take longer.
    explicit NameTable(bool fold, std::size_t expected = 0);

    /// Notes the name at `line`, which is not 0. Returns the line where it was met first; 0 when this is it.
    std::size_t add(std::string_view name, std::size_t line);
    /// The line where the name was met first; 0 when it was not.
    std::size_t find(std::string_view name) const;

private:
    struct Seen {
        std::string_view name;
        std::size_t line;
    };
    /// Small, so that many stay near the processor: most lookups end here.
    struct Slot {
        std::uint32_t hash = 0;
        /// Which of the names, counted from 1; 0 when free.
        std::uint32_t number = 0;
    };

    std::uint32_t hash_of(std::string_view name) const;
    bool same(std::string_view one, std::string_view other) const;
    /// The slot that has the name, or the free one that it would go to.
    std::size_t place_of(std::string_view name, std::uint32_t hash) const;
    void grow();

    bool fold_;
    std::vector<Slot> slots_;
    std::vector<Seen> seen_;
};
