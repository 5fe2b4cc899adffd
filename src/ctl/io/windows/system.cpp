#include "ctl/io/system.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/windows/wide.h"
#include "platform/win32.h"

#include <algorithm>
#include <fcntl.h>
#include <io.h>
#include <share.h>

namespace ctl {
namespace {

/// The console that the stream leads to; null when it is redirected.
HANDLE find_console(std::FILE* file) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

/// Looked for once: a report is printed in thousands of pieces.
HANDLE console_of(std::FILE* file) {
    static const HANDLE output = find_console(stdout);
    static const HANDLE messages = find_console(stderr);
    return file == stdout ? output : messages;
}

/// In pieces, because consoles of older systems take no more than 64 KB at once; no piece ends between the
/// two halves of a character.
bool write_console(HANDLE console, std::wstring_view text) {
    constexpr std::size_t piece = 8192;
    while (!text.empty()) {
        std::size_t size = std::min(text.size(), piece);
        if (size > 1 && IS_HIGH_SURROGATE(text[size - 1]))
            --size;
        DWORD written = 0;
        if (!WriteConsoleW(console, text.data(), static_cast<DWORD>(size), &written, nullptr))
            return false;
        text.remove_prefix(size);
    }
    return true;
}

} // namespace

bool write_text(std::FILE* file, std::string_view text) {
    if (const HANDLE console = console_of(file))
        return write_console(console, to_wide(std::string(text)));
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

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

std::vector<std::string> names_in(const std::string& folder) {
    std::vector<std::string> names;
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(to_wide(join_path(folder, "*")).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do
        names.push_back(from_wide(found.cFileName));
    while (FindNextFileW(search, &found));
    FindClose(search);
    return names;
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

std::string machine_name() {
    wchar_t name[256] = L"";
    DWORD size = 256;
    GetComputerNameExW(ComputerNamePhysicalDnsHostname, name, &size);
    return from_wide(name);
}

std::string full_path(const std::string& path) {
    const std::wstring wide = to_wide(path);
    std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return from_wide(full);
}

std::string join_path(const std::string& folder, const std::string& name) {
    return folder + (folder.ends_with('\\') || folder.ends_with('/') ? "" : "\\") + name;
}

bool is_terminal(std::FILE* file) { return _isatty(_fileno(file)) != 0; }

void make_binary(std::FILE* file) { _setmode(_fileno(file), _O_BINARY); }

} // namespace ctl
