#include "ctl/verbs/bounded_network.h"

#include "platform/win32.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace ctl {
namespace {

using Work = std::function<void()>;

DWORD WINAPI run(void* given) {
    const std::unique_ptr<Work> work(static_cast<Work*>(given));
    (*work)();
    return 0;
}

} // namespace

bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work) {
    auto owned = std::make_unique<Work>(std::move(work));
    const HANDLE thread = CreateThread(nullptr, 0, run, owned.get(), 0, nullptr);
    if (thread == nullptr)
        return false;
    owned.release(); // the thread's
    const auto longest = std::max(limit, std::chrono::milliseconds::zero()).count();
    const DWORD result = WaitForSingleObject(thread, static_cast<DWORD>(longest));
    CloseHandle(thread);
    return result == WAIT_OBJECT_0;
}

std::chrono::milliseconds uptime() { return std::chrono::milliseconds(GetTickCount64()); }

} // namespace ctl
