#include "net/winsock_message.h"

#include "error/messages.h"
#include "platform/win32.h"

namespace net {

const char* code_message(const char* what, int code) {
    return format_error("%s%s (%d)", what, system_error_text(static_cast<DWORD>(code)), code);
}

const char* last_error_message(const char* what) { return code_message(what, WSAGetLastError()); }

} // namespace net
