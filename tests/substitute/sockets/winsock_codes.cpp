#include "substitute/sockets/winsock_codes.h"

#include "substitute/kernel/kernel.h"
#include "substitute/sockets/winsock_calls.h"

#include <cerrno>
#include <netdb.h>

namespace winsock {
namespace {

struct Pair {
    int host;
    int windows;
};

constexpr Pair pairs[] = {
    {0, 0},
    {EINTR, WSAEINTR},
    {EBADF, WSAENOTSOCK},
    {EACCES, WSAEACCES},
    {EPERM, WSAEACCES},
    {EFAULT, WSAEFAULT},
    {EINVAL, WSAEINVAL},
    {EMFILE, WSAEMFILE},
    {ENFILE, WSAEMFILE},
    {EAGAIN, WSAEWOULDBLOCK},
    {EINPROGRESS, WSAEINPROGRESS},
    {EALREADY, WSAEALREADY},
    {ENOTSOCK, WSAENOTSOCK},
    {EDESTADDRREQ, WSAEDESTADDRREQ},
    {EMSGSIZE, WSAEMSGSIZE},
    {EPROTOTYPE, WSAEPROTOTYPE},
    {ENOPROTOOPT, WSAENOPROTOOPT},
    {EPROTONOSUPPORT, WSAEPROTONOSUPPORT},
    {EOPNOTSUPP, WSAEOPNOTSUPP},
    {EAFNOSUPPORT, WSAEAFNOSUPPORT},
    {EADDRINUSE, WSAEADDRINUSE},
    {EADDRNOTAVAIL, WSAEADDRNOTAVAIL},
    {ENETDOWN, WSAENETDOWN},
    {ENETUNREACH, WSAENETUNREACH},
    {ENETRESET, WSAENETRESET},
    {ECONNABORTED, WSAECONNABORTED},
    {ECONNRESET, WSAECONNRESET},
    {EPIPE, WSAECONNABORTED},
    {ENOBUFS, WSAENOBUFS},
    {ENOMEM, WSAENOBUFS},
    {EISCONN, WSAEISCONN},
    {ENOTCONN, WSAENOTCONN},
    {ESHUTDOWN, WSAESHUTDOWN},
    {ETIMEDOUT, WSAETIMEDOUT},
    {ECONNREFUSED, WSAECONNREFUSED},
    {EHOSTDOWN, WSAEHOSTDOWN},
    {EHOSTUNREACH, WSAEHOSTUNREACH},
};

} // namespace

int code_of_errno(int host_code) {
    for (const Pair& each : pairs) {
        if (each.host == host_code)
            return each.windows;
    }
    return WSAEINVAL;
}

int code_of_lookup(int host_code) {
    switch (host_code) {
    case HOST_NOT_FOUND: return WSAHOST_NOT_FOUND;
    case TRY_AGAIN: return WSATRY_AGAIN;
    case NO_DATA: return WSANO_DATA;
    default: return WSANO_RECOVERY;
    }
}

int fail_with(int code) {
    SetLastError(static_cast<DWORD>(code));
    return SOCKET_ERROR;
}

} // namespace winsock
