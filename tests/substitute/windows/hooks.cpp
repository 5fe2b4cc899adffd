#include "substitute/windows/hooks.h"

#include "substitute/calls.h"
#include "substitute/control/user.h"
#include "substitute/kernel/kernel.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace substitute {
namespace {

struct Hook {
    HHOOK handle;
    HOOKPROC procedure;
};

struct Hooks {
    /// The one that was set last is asked first.
    std::vector<Hook> set;
    std::size_t asked = 0;
    ULONG_PTR made = 0;
};

Hooks& hooks() {
    static Hooks instance;
    return instance;
}

const ResetHook reset_hook([] { hooks() = Hooks{}; });

LRESULT ask(std::size_t nth, int code, WPARAM wparam, LPARAM lparam) {
    const auto& set = hooks().set;
    if (nth >= set.size())
        return 0;
    const std::size_t before = std::exchange(hooks().asked, nth);
    const LRESULT answer = set[set.size() - 1 - nth].procedure(code, wparam, lparam);
    hooks().asked = before;
    return answer;
}

} // namespace

bool filter_takes(MSG& message) { return ask(0, MSGF_DIALOGBOX, 0, reinterpret_cast<LPARAM>(&message)) != 0; }

int open_hooks() { return static_cast<int>(hooks().set.size()); }

} // namespace substitute

using namespace substitute;

HHOOK SetWindowsHookExA(int, HOOKPROC procedure, HINSTANCE, DWORD) {
    if (failing("SetWindowsHookExA", ERROR_NOT_ENOUGH_MEMORY))
        return nullptr;
    const auto handle = reinterpret_cast<HHOOK>(++hooks().made);
    hooks().set.push_back({handle, procedure});
    return handle;
}

BOOL UnhookWindowsHookEx(HHOOK hook) {
    if (failing("UnhookWindowsHookEx", ERROR_INVALID_HANDLE))
        return FALSE;
    return std::erase_if(hooks().set, [hook](const Hook& each) { return each.handle == hook; }) > 0;
}

LRESULT CallNextHookEx(HHOOK, int code, WPARAM wparam, LPARAM lparam) {
    return ask(hooks().asked + 1, code, wparam, lparam);
}
