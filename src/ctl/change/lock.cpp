#include "ctl/change/lock.h"

#include "ctl/failure.h"
#include "ctl/io/system.h"
#include "ctl/machine/data_folder.h"
#include "platform/win32.h"

namespace ctl {
namespace {

constexpr DWORD between_tries = 50;

void* wait_for_file(int timeout_seconds) {
    const std::string path = join_path(data_folder(), "lock");
    const std::uint64_t limit = GetTickCount64() + static_cast<std::uint64_t>(timeout_seconds) * 1000;
    while (true) {
        if (void* const file = hold_file(path))
            return file;
        if (GetTickCount64() >= limit)
            throw Failure{ExitCode::failed, "timed out waiting for another tavrinctl; nothing was written"};
        Sleep(between_tries);
    }
}

} // namespace

Lock::Lock(int timeout_seconds) : file_(wait_for_file(timeout_seconds)) {}
Lock::~Lock() { release_file(file_); }

} // namespace ctl
