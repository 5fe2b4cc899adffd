#include "spec/spec_file.h"

#include <array>
#include <fstream>
#include <ios>

/// Binary, since text mode would end the file at a Ctrl-Z on one system and not on the other.
std::optional<std::string> read_spec_file(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::array<char, 65536> chunk;
    stream.read(chunk.data(), chunk.size());
    // Some systems open a directory and then refuse to read it.
    if (!stream.is_open() || stream.bad())
        return std::nullopt;
    std::string bytes(chunk.data(), static_cast<std::size_t>(stream.gcount()));
    while (stream.read(chunk.data(), chunk.size()), stream.gcount() > 0)
        bytes.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
    return bytes;
}
