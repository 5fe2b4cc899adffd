#include "substitute/control/errors.h"
#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string>

namespace {

thread_local DWORD last_error = 0;

struct SystemText {
    DWORD code;
    const char* text;
};

/// As Wine says them, which has no words for most of the network's codes. In ascending order.
constexpr SystemText system_texts[] = {
    {0, "Success."},
    {1, "Invalid function."},
    {2, "File not found."},
    {3, "Path not found."},
    {4, "Too many open files."},
    {5, "Access denied."},
    {6, "Invalid handle."},
    {8, "Not enough memory."},
    {14, "Out of memory."},
    {32, "Sharing violation."},
    {50, "Request not supported."},
    {53, "Bad network path."},
    {64, "Network name deleted."},
    {67, "Bad network name."},
    {87, "Invalid parameter."},
    {109, "Broken pipe."},
    {121, "Semaphore timeout."},
    {122, "Insufficient buffer."},
    {123, "Invalid name."},
    {161, "Path is invalid."},
    {183, "File already exists."},
    {206, "File name is too long."},
    {231, "Pipe busy."},
    {234, "More data available."},
    {259, "No more data available."},
    {317, "Message 0x%1 not found in file %2."},
    {998, "No access to memory location."},
    {1018, "Key deleted."},
    {1051, "Dependent services are running."},
    {1052, "Invalid service control."},
    {1053, "Service request timeout."},
    {1055, "Service database locked."},
    {1056, "Service already running."},
    {1058, "Service is disabled."},
    {1060, "Service does not exist."},
    {1061, "Service cannot accept control message."},
    {1062, "Service not active."},
    {1063, "Service controller connect failed."},
    {1068, "Service dependency failed."},
    {1069, "Service login failed."},
    {1072, "Service marked for delete."},
    {1115, "Shutdown in progress."},
    {1225, "Connection refused."},
    {1231, "Network unreachable."},
    {1232, "Host unreachable."},
    {1450, "No system resources."},
    {10004, "Call interrupted."},
    {10009, "Invalid file handle."},
    {10013, "Access denied."},
    {10014, "Invalid pointer address."},
    {10022, "Invalid argument."},
    {10024, "Too many open files."},
    {10054, "Connection reset by peer."},
    {10061, "Connection refused."},
    {11001, "Host not found."},
    {11002, "Nonauthoritative host not found."},
    {11003, "Nonrecoverable error."},
    {11004, "Name valid, no data record."},
    {0x80004005, "Call failed."},
};

std::map<DWORD, std::string>& scripted_texts() {
    static std::map<DWORD, std::string> instance;
    return instance;
}

const substitute::ResetHook reset_hook([] { scripted_texts().clear(); });

std::optional<std::string> find_text(DWORD code) {
    if (const auto scripted = scripted_texts().find(code); scripted != scripted_texts().end())
        return scripted->second;
    const auto* const found =
        std::lower_bound(std::begin(system_texts), std::end(system_texts), code,
                         [](const SystemText& row, DWORD wanted) { return row.code < wanted; });
    if (found == std::end(system_texts) || found->code != code)
        return std::nullopt;
    return std::string(found->text) + "\r\n";
}

} // namespace

DWORD GetLastError() { return last_error; }
void SetLastError(DWORD code) { last_error = code; }

DWORD FormatMessageA(DWORD flags, const void*, DWORD code, DWORD, LPSTR buffer, DWORD size, void*) {
    if (substitute::failing("FormatMessageA", ERROR_NOT_ENOUGH_MEMORY))
        return 0;
    if ((flags & FORMAT_MESSAGE_FROM_SYSTEM) == 0)
        return substitute::refuse<DWORD>(ERROR_INVALID_PARAMETER);
    const auto text = find_text(code);
    if (!text)
        return substitute::refuse<DWORD>(ERROR_MR_MID_NOT_FOUND);
    if (size <= text->size())
        return substitute::refuse<DWORD>(ERROR_INSUFFICIENT_BUFFER);
    std::copy_n(text->c_str(), text->size() + 1, buffer);
    return static_cast<DWORD>(text->size());
}

DWORD GetCurrentThreadId() { return 1; }

void substitute::set_system_text(DWORD code, const std::string& text) { scripted_texts()[code] = text; }
