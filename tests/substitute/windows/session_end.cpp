#include "substitute/calls.h"
#include "substitute/control/user.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/window.h"

#include <map>

namespace substitute {
namespace {

std::map<HWND, std::wstring>& reasons() {
    static std::map<HWND, std::wstring> instance;
    return instance;
}

const ResetHook reset_hook([] { reasons().clear(); });

} // namespace

std::wstring shutdown_block_reason(HWND window) {
    const auto found = reasons().find(window);
    return found == reasons().end() ? std::wstring() : found->second;
}

} // namespace substitute

using namespace substitute;

BOOL ShutdownBlockReasonCreate(HWND window, LPCWSTR reason) {
    if (failing("ShutdownBlockReasonCreate", ERROR_ACCESS_DENIED) || window_of(window) == nullptr)
        return FALSE;
    reasons()[window] = reason;
    return TRUE;
}

BOOL ShutdownBlockReasonDestroy(HWND window) {
    if (failing("ShutdownBlockReasonDestroy", ERROR_ACCESS_DENIED))
        return FALSE;
    return reasons().erase(window) > 0;
}
