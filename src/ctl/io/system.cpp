#include "ctl/io/system.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace ctl {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const {
        if (file != stdin)
            std::fclose(file);
    }
};
using OwnedFile = std::unique_ptr<std::FILE, FileCloser>;

OwnedFile open_to_read(const std::string& path) {
    if (path != "-")
        return OwnedFile(open_file(path, "rb"));
    make_binary(stdin);
    return OwnedFile(stdin);
}

} // namespace

std::optional<std::string> read_file(const std::string& path, std::size_t limit) {
    const OwnedFile file = open_to_read(path);
    if (file == nullptr)
        return std::nullopt;
    std::string octets;
    char chunk[65536];
    while (octets.size() <= limit) {
        const std::size_t size =
            std::fread(chunk, 1, std::min(sizeof chunk, limit + 1 - octets.size()), file.get());
        if (size == 0)
            break;
        octets.append(chunk, size);
    }
    // Some systems open a folder and then refuse to read it.
    if (std::ferror(file.get()) != 0)
        return std::nullopt;
    return octets;
}

std::string why_unreadable() { return std::string("cannot read: ") + std::strerror(errno); }

bool write_file(const std::string& path, std::string_view octets, bool fresh) {
    OwnedFile file(open_file(path, fresh ? "wbx" : "wb"));
    if (file == nullptr)
        return false;
    const bool written =
        std::fwrite(octets.data(), 1, octets.size(), file.get()) == octets.size() && reach_disk(file.get());
    file.reset();
    if (!written)
        remove_file(path);
    return written;
}

std::optional<std::string> sha256_of_file(const std::string& path) {
    const auto octets = read_file(path);
    return octets ? std::optional(sha256(*octets)) : std::nullopt;
}

} // namespace ctl
