#include "spec/spec_file.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

/// Ctrl-Z, with which a text ends on Windows; `copy` leaves one behind the files that it joins.
constexpr char end_of_text = '\x1A';

} // namespace

/// Binary, since text mode would end the file at that byte on one system and not on the other. The C
/// library's files, since a stream would bring the whole of the locales into the program.
std::optional<std::string> read_spec_file(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr)
        return std::nullopt;
    std::string bytes;
    char chunk[65536];
    while (const std::size_t size = std::fread(chunk, 1, sizeof chunk, file.get()))
        bytes.append(chunk, size);
    // Some systems open a directory and then refuse to read it.
    if (std::ferror(file.get()) != 0)
        return std::nullopt;
    bytes.resize(std::min(bytes.find(end_of_text), bytes.size()));
    return bytes;
}
