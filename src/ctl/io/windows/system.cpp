#include "ctl/io/system.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/windows/wide.h"
#include "platform/win32.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>

namespace ctl {

/// Not with "x": the C library of older systems does not know it.
std::FILE* open_file(const std::string& path, const char* mode) {
    std::string known = mode;
    const std::size_t fresh = known.find('x');
    if (fresh == std::string::npos)
        return _wfsopen(to_wide(path).c_str(), to_wide(known).c_str(), _SH_DENYNO);
    const int file = _wopen(to_wide(path).c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, 0600);
    return file < 0 ? nullptr : _fdopen(file, known.erase(fresh, 1).c_str());
}

bool make_folders(const std::string& path) {
    const std::wstring wide = to_wide(path);
    for (std::size_t end = wide.find_first_of(L"\\/", 1); end != std::wstring::npos;
         end = wide.find_first_of(L"\\/", end + 1))
        CreateDirectoryW(wide.substr(0, end).c_str(), nullptr);
    CreateDirectoryW(wide.c_str(), nullptr);
    const DWORD found = GetFileAttributesW(wide.c_str());
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool file_exists(const std::string& path) {
    return GetFileAttributesW(to_wide(path).c_str()) != INVALID_FILE_ATTRIBUTES ||
           GetLastError() == ERROR_ACCESS_DENIED;
}

void remove_file(const std::string& path) { DeleteFileW(to_wide(path).c_str()); }

void* hold_file(const std::string& path) {
    const HANDLE file = CreateFileW(to_wide(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE)
        return file;
    const DWORD code = GetLastError();
    if (code == ERROR_SHARING_VIOLATION)
        return nullptr;
    throw Failure{code == ERROR_ACCESS_DENIED ? access_denied : failed,
                  "cannot open " + path + ": " + to_utf8(system_error_string(code))};
}

void release_file(void* file) { CloseHandle(file); }

bool reach_disk(std::FILE* file) { return std::fflush(file) == 0 && _commit(_fileno(file)) == 0; }

std::string join_path(const std::string& folder, const std::string& name) {
    return folder + (folder.ends_with('\\') || folder.ends_with('/') ? "" : "\\") + name;
}

bool is_terminal(std::FILE* file) { return _isatty(_fileno(file)) != 0; }

void make_binary(std::FILE* file) { _setmode(_fileno(file), _O_BINARY); }

} // namespace ctl
