#include "ctl/machine/data_folder.h"

#include "ctl/failure.h"

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace ctl {
namespace {

void prepare(const std::string& path) {
    mkdir(path.c_str(), 0700);
    struct stat found {};
    if (lstat(path.c_str(), &found) != 0 || !S_ISDIR(found.st_mode))
        throw Failure{ExitCode::failed, path + " is a link or a file; remove it and run tavrinctl again"};
    if (found.st_uid != geteuid()) {
        throw Failure{ExitCode::failed,
                      path + " belongs to " + std::to_string(found.st_uid) +
                          ", not to the administrators; look at what is in it, remove it and run "
                          "tavrinctl again"};
    }
    if (chmod(path.c_str(), 0700) != 0)
        throw Failure{ExitCode::failed, "cannot remove other users' access to the folder " + path};
}

} // namespace

/// Used only by the tests, each of which names a separate folder.
std::string data_folder() {
    const char* const named = std::getenv("TAVRINCTL_DATA");
    return named != nullptr ? named : "tavrinctl-data";
}

std::string backup_folder() { return data_folder() + "/Backup"; }

void prepare_data_folder() {
    prepare(data_folder());
    prepare(backup_folder());
}

} // namespace ctl
