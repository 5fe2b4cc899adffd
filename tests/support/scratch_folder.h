#pragma once
#include <filesystem>
#include <string>

/// A folder for a test's files that nobody else has, not even the same test in another process. It goes with
/// what is in it.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();
    /// The path of the file or folder `name` in it.
    std::string path_of(const std::string& name) const { return (folder_ / name).string(); }

private:
    std::filesystem::path folder_;
};
