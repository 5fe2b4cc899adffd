#pragma once
/// Where discovery gets its memory, which goes to callers that free() it. Only a test changes it, to let
/// memory run out on any platform.
#include <cstddef>
#include <cstdlib>

namespace net {

using ResizeMemory = void* (*)(void* block, std::size_t size);

/// By realloc's rules: a null `block` allocates, a null result means that `block` is as it was.
inline ResizeMemory resize_memory = std::realloc;

/// For std::unique_ptr.
struct FreeMemory {
    void operator()(void* block) const { std::free(block); }
};

} // namespace net
