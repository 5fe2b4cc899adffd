#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// The names that were seen so far, with their lines. Adding the names of a file with 100,000 entries takes
/// less time than parsing it. The names must outlive the table.
class NameTable {
public:
    /// With `fold`, the case of ASCII letters is ignored, as in the registry's names. More names than
    /// `expected` may be added, but take longer.
    explicit NameTable(bool fold, std::size_t expected = 0);

    /// Notes the name at `line`, which is not 0. Returns the line where the name was first seen; 0 if this is
    /// the first time.
    std::size_t add(std::string_view name, std::size_t line);
    /// The line where the name was first seen; 0 if it was not.
    std::size_t find(std::string_view name) const;

private:
    struct Seen {
        std::string_view name;
        std::size_t line;
    };
    /// Small, so that many slots fit into the processor's cache: most lookups end here.
    struct Slot {
        std::uint32_t hash = 0;
        /// The number of the name, counted from 1; 0 if the slot is free.
        std::uint32_t number = 0;
    };

    std::uint32_t hash_of(std::string_view name) const;
    bool same(std::string_view one, std::string_view other) const;
    /// The slot that has the name, or the free one where it would be added.
    std::size_t place_of(std::string_view name, std::uint32_t hash) const;
    void grow();

    bool fold_;
    std::vector<Slot> slots_;
    std::vector<Seen> seen_;
};
