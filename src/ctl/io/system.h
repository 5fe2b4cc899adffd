#pragma once
/// The calls of the system that tavrinctl needs, except those for the registry, services and sockets. Paths
/// and names are UTF-8. The folder of each platform has its own implementation of some of them.
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ctl {

/// The octets of the file at `path`; "-" is the standard input. Nothing if it cannot be read. Reads at most
/// one octet more than `limit`, by which callers notice that the file is too long.
std::optional<std::string> read_file(const std::string& path,
                                     std::size_t limit = static_cast<std::size_t>(-2));
/// Says why read_file has just failed: "cannot read: " and the system's reason.
std::string why_unreadable();
/// Replaces the file at `path`, or with `fresh` creates one that must not exist yet. If that fails, returns
/// false and leaves no incomplete file.
bool write_file(const std::string& path, std::string_view octets, bool fresh = false);
/// Works like fopen. With "x" in the mode, the file must not exist yet.
std::FILE* open_file(const std::string& path, const char* mode);
/// Waits until everything written to the file is on the disk.
bool reach_disk(std::FILE* file);
/// Passes the file's contents as they are, without converting line ends.
void make_binary(std::FILE* file);

/// Creates the folder and those above it. Returns false if it does not exist afterwards.
bool make_folders(const std::string& path);
/// The names of what is in the folder, in no order; empty if it cannot be read.
std::vector<std::string> names_in(const std::string& folder);
/// Whether the file exists, even if it may not be read.
bool file_exists(const std::string& path);
/// Removes the file if it exists.
void remove_file(const std::string& path);
/// Creates the file if it is missing, and keeps every other process from holding it until release_file or the
/// end of this process. Null while another process holds it; throws Failure if it cannot be opened.
void* hold_file(const std::string& path);
void release_file(void* file);
/// The absolute path, from a path relative to the current folder.
std::string full_path(const std::string& path);
std::string join_path(const std::string& folder, const std::string& name);

/// The SHA-256 of the octets, as 64 hexadecimal digits in lower case. Throws Failure if the system cannot
/// compute it.
std::string sha256(std::string_view octets);
/// The SHA-256 of the file at `path`; nothing if it cannot be read.
std::optional<std::string> sha256_of_file(const std::string& path);

/// The machine's name in its network.
std::string machine_name();
bool is_terminal(std::FILE* file);
/// Writes UTF-8 to stdout or stderr. A Windows console shows it correctly, whatever its code page; the code
/// page is not changed.
bool write_text(std::FILE* file, std::string_view text);

/// Runs `work` in a separate thread and waits for it. Returns false if it takes longer than `limit`; the
/// thread then keeps running, so `work` must own everything that it uses.
bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work);

/// While it exists, Ctrl+C, a console that closes and the end of a session do not end the program: a stopped
/// service is started again first. Only one may exist at a time.
class Uninterrupted {
public:
    Uninterrupted();
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted();

    /// Whether a request to end the program has arrived meanwhile.
    bool is_over() const;
};

} // namespace ctl
