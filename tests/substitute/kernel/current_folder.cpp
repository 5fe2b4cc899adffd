#include "substitute/calls.h"
#include "substitute/control/dialogs.h"
#include "substitute/kernel/kernel.h"

#include <string>

namespace substitute {
namespace {

const std::wstring first_folder = L"C:\\start";

std::wstring& folder() {
    static std::wstring instance = first_folder;
    return instance;
}

const ResetHook reset_hook([] { folder() = first_folder; });

} // namespace

std::wstring current_folder() { return folder(); }
void change_current_folder(const std::wstring& path) { folder() = path; }

} // namespace substitute

using namespace substitute;

/// Of a buffer that is too small the needed size, with the zero at the end.
DWORD GetCurrentDirectoryW(DWORD capacity, LPWSTR buffer) {
    if (failing("GetCurrentDirectoryW", ERROR_ACCESS_DENIED))
        return 0;
    const auto length = static_cast<DWORD>(folder().size());
    if (capacity <= length)
        return length + 1;
    buffer[folder().copy(buffer, length)] = L'\0';
    return length;
}

BOOL SetCurrentDirectoryW(LPCWSTR path) {
    if (failing("SetCurrentDirectoryW", ERROR_PATH_NOT_FOUND))
        return FALSE;
    folder() = path;
    return TRUE;
}
