#include "ctl/io/system.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"
#include "ctl/io/windows/encoding.h"
#include "platform/win32.h"

#include <algorithm>
#include <atomic>
#include <bcrypt.h>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <share.h>
#include <utility>

namespace ctl {
namespace {

/// The console that the stream leads to; null when it is redirected.
HANDLE find_console(std::FILE* file) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

/// Searched only once, because a report is printed in thousands of pieces.
HANDLE console_of(std::FILE* file) {
    static const HANDLE output = find_console(stdout);
    static const HANDLE messages = find_console(stderr);
    return file == stdout ? output : messages;
}

/// Writes in pieces, because consoles of older systems take no more than 64 KB at once. No piece ends between
/// the two halves of a character.
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

constexpr std::size_t digest_size = 32;
/// The most that one call takes.
constexpr std::size_t most_octets = 1U << 30;

struct AlgorithmCloser {
    using pointer = BCRYPT_ALG_HANDLE;
    void operator()(BCRYPT_ALG_HANDLE algorithm) const { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
struct HashCloser {
    using pointer = BCRYPT_HASH_HANDLE;
    void operator()(BCRYPT_HASH_HANDLE hash) const { BCryptDestroyHash(hash); }
};

void check(NTSTATUS status) {
    if (!BCRYPT_SUCCESS(status))
        throw Failure{ExitCode::failed,
                      "Windows cannot compute a SHA-256 (error " + std::to_string(status) + ")"};
}

/// On older systems bcrypt.dll is not among the known DLLs, so the first call to it would search the
/// program's folder if it is not loaded yet.
void load_from_system_folder() {
    wchar_t folder[MAX_PATH];
    const UINT size = GetSystemDirectoryW(folder, MAX_PATH);
    const std::wstring path = std::wstring(folder, size) + L"\\bcrypt.dll";
    if (size == 0 || LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) == nullptr)
        throw Failure{ExitCode::failed, "Windows cannot compute a SHA-256: bcrypt.dll cannot be loaded"};
}

// The system calls the handler on a thread of its own.
std::atomic<bool> end_requested = false;
HANDLE finished = nullptr;

/// After Ctrl+C, the program continues. In all other cases, the system ends it when this function returns, or
/// after some seconds.
BOOL WINAPI note_request(DWORD kind) {
    end_requested = true;
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
        WaitForSingleObject(finished, INFINITE);
    return TRUE;
}

using Work = std::function<void()>;

DWORD WINAPI run_work(void* given) {
    const std::unique_ptr<Work> work(static_cast<Work*>(given));
    (*work)();
    return 0;
}

} // namespace

bool write_text(std::FILE* file, std::string_view text) {
    if (const HANDLE console = console_of(file))
        return write_console(console, to_wide(std::string(text)));
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

/// The C library of older systems does not know "x".
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
    throw Failure{code == ERROR_ACCESS_DENIED ? ExitCode::access_denied : ExitCode::failed,
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

std::string sha256(std::string_view octets) {
    load_from_system_folder();
    BCRYPT_ALG_HANDLE opened = nullptr;
    check(BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0));
    const std::unique_ptr<void, AlgorithmCloser> algorithm(opened);
    BCRYPT_HASH_HANDLE begun = nullptr;
    check(BCryptCreateHash(algorithm.get(), &begun, nullptr, 0, nullptr, 0, 0));
    const std::unique_ptr<void, HashCloser> hash(begun);
    for (; !octets.empty(); octets.remove_prefix(std::min(octets.size(), most_octets))) {
        // The call does not write there.
        auto* const start = reinterpret_cast<PUCHAR>(const_cast<char*>(octets.data()));
        check(BCryptHashData(hash.get(), start, static_cast<ULONG>(std::min(octets.size(), most_octets)), 0));
    }
    std::string digest(digest_size, '\0');
    check(BCryptFinishHash(hash.get(), reinterpret_cast<PUCHAR>(digest.data()), digest_size, 0));
    return hex_of(digest);
}

bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work) {
    auto owned = std::make_unique<Work>(std::move(work));
    const HANDLE thread = CreateThread(nullptr, 0, run_work, owned.get(), 0, nullptr);
    if (thread == nullptr)
        return false;
    owned.release(); // owned by the thread now
    const auto longest = std::max(limit, std::chrono::milliseconds::zero()).count();
    const DWORD result = WaitForSingleObject(thread, static_cast<DWORD>(longest));
    CloseHandle(thread);
    return result == WAIT_OBJECT_0;
}

Uninterrupted::Uninterrupted() {
    finished = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(note_request, TRUE);
}

/// The event stays open: a handler may still wait for it.
Uninterrupted::~Uninterrupted() {
    SetEvent(finished);
    SetConsoleCtrlHandler(note_request, FALSE);
}

bool Uninterrupted::is_over() const { return end_requested; }

} // namespace ctl
