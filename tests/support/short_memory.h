#pragma once
/// Lets memory run out for discovery.
#include "net/memory.h"

#include <vector>

/// While one exists, the `failing`-th request for memory from now on fails, and all later ones as well,
/// unless `once` is set; 0 fails none.
class ShortMemory {
public:
    explicit ShortMemory(std::size_t failing, bool once = false) {
        only() = once;
        sizes().clear();
        limit() = failing;
        net::resize_memory = resize;
    }
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;
    ~ShortMemory() { net::resize_memory = std::realloc; }

    /// The sizes asked for, in order.
    static std::vector<std::size_t>& sizes() {
        static std::vector<std::size_t> asked;
        return asked;
    }

private:
    static std::size_t& limit() {
        static std::size_t failing = 0;
        return failing;
    }
    static bool& only() {
        static bool once = false;
        return once;
    }
    static bool fails(std::size_t request) {
        return limit() != 0 && (only() ? request == limit() : request >= limit());
    }
    static void* resize(void* block, std::size_t size) {
        sizes().push_back(size);
        return fails(sizes().size()) ? nullptr : std::realloc(block, size);
    }
};
