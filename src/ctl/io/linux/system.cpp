#include "ctl/io/system.h"

#include "ctl/failure.h"
#include "ctl/io/printable.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <future>
#include <memory>
#include <sha256.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace ctl {

std::FILE* open_file(const std::string& path, const char* mode) { return std::fopen(path.c_str(), mode); }

bool make_folders(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        mkdir(path.substr(0, end).c_str(), 0777);
    mkdir(path.c_str(), 0777);
    struct stat found {};
    return stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    for (const auto& each : std::filesystem::directory_iterator(folder, failure))
        names.push_back(each.path().filename().string());
    return names;
}

bool file_exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

void remove_file(const std::string& path) { unlink(path.c_str()); }

void* hold_file(const std::string& path) {
    std::FILE* const file = open_file(path, "ab");
    if (file == nullptr)
        throw Failure{ExitCode::failed, "cannot open " + path + ": " + std::strerror(errno)};
    if (flock(fileno(file), LOCK_EX | LOCK_NB) == 0)
        return file;
    std::fclose(file);
    return nullptr;
}

void release_file(void* file) { std::fclose(static_cast<std::FILE*>(file)); }

bool reach_disk(std::FILE* file) { return std::fflush(file) == 0 && fsync(fileno(file)) == 0; }

std::string machine_name() {
    char name[256] = "";
    gethostname(name, sizeof name - 1);
    return name;
}

std::string full_path(const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

std::string join_path(const std::string& folder, const std::string& name) {
    return folder + (folder.ends_with('/') ? "" : "/") + name;
}

bool is_terminal(std::FILE* file) { return isatty(fileno(file)) != 0; }

bool write_text(std::FILE* file, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

void make_binary(std::FILE*) {}

std::string sha256(std::string_view octets) {
    SHA256_CTX state;
    SHA256Init(&state);
    SHA256Update(&state, reinterpret_cast<const std::uint8_t*>(octets.data()), octets.size());
    std::uint8_t digest[SHA256_DIGEST_LENGTH];
    SHA256Final(digest, &state);
    return hex_of({reinterpret_cast<const char*>(digest), sizeof digest});
}

bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work) {
    const auto done = std::make_shared<std::promise<void>>();
    const std::future<void> end = done->get_future();
    std::thread([done, own = std::move(work)] {
        own();
        done->set_value();
    }).detach();
    return end.wait_for(limit) == std::future_status::ready;
}

/// The services of the tests' Windows end with the process, so there is nothing to start again.
Uninterrupted::Uninterrupted() = default;
Uninterrupted::~Uninterrupted() {}
bool Uninterrupted::is_over() const { return false; }

} // namespace ctl
