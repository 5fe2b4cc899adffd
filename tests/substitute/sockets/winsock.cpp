#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/sockets/winsock_calls.h"
#include "substitute/sockets/winsock_script.h"

#include <cerrno>

namespace winsock {
namespace {

int descriptor(SOCKET handle) { return static_cast<int>(handle); }

/// A count or result of the host with its error translated; Winsock counts in int.
template <typename Count> int finished(Count result) {
    if (result < 0)
        SetLastError(static_cast<DWORD>(code_of_errno(errno)));
    return static_cast<int>(result);
}

SOCKET opened(int result) {
    if (finished(result) < 0)
        return INVALID_SOCKET;
    note_opened(static_cast<SOCKET>(result));
    return static_cast<SOCKET>(result);
}

const ::sockaddr* host_address(const sockaddr* address) {
    static_assert(sizeof(sockaddr_in) == sizeof(::sockaddr_in));
    return reinterpret_cast<const ::sockaddr*>(address);
}
::sockaddr* host_address(sockaddr* address) { return reinterpret_cast<::sockaddr*>(address); }
/// Both are 32 bits wide and never negative here.
::socklen_t* host_size(int* size) { return reinterpret_cast<::socklen_t*>(size); }
::socklen_t host_size(int size) { return static_cast<::socklen_t>(size); }

/// Until the process ends, as the program never ends the use of its sockets.
bool started = false;

} // namespace

int WSAStartup(WORD version, WSADATA* data) {
    if (const DWORD code = substitute::failing("WSAStartup", WSASYSNOTREADY))
        return static_cast<int>(code);
    data->wVersion = version;
    data->wHighVersion = 0x0202;
    started = true;
    return 0;
}

int WSAGetLastError() { return static_cast<int>(GetLastError()); }

SOCKET socket(int family, int type, int protocol) {
    if (substitute::failing("socket", WSAEMFILE))
        return INVALID_SOCKET;
    if (!started) {
        SetLastError(WSANOTINITIALISED);
        return INVALID_SOCKET;
    }
    return opened(::socket(family, type | SOCK_CLOEXEC, protocol));
}

int closesocket(SOCKET handle) {
    if (substitute::failing("closesocket", WSAENOTSOCK))
        return SOCKET_ERROR;
    // Before the close, because another thread may get the same number right after it.
    note_closed(handle);
    return finished(::close(descriptor(handle)));
}

int ioctlsocket(SOCKET handle, LONG command, ULONG* argument) {
    if (substitute::failing("ioctlsocket", WSAENOTSOCK))
        return SOCKET_ERROR;
    if (command != FIONBIO)
        return fail_with(WSAEINVAL);
    const int flags = ::fcntl(descriptor(handle), F_GETFL);
    if (flags < 0)
        return finished(flags);
    return finished(
        ::fcntl(descriptor(handle), F_SETFL, *argument != 0 ? flags | O_NONBLOCK : flags & ~O_NONBLOCK));
}

int setsockopt(SOCKET handle, int level, int option, const char* value, int size) {
    if (substitute::failing("setsockopt", WSAENOPROTOOPT))
        return SOCKET_ERROR;
    return finished(::setsockopt(descriptor(handle), level, option, value, host_size(size)));
}

int getsockopt(SOCKET handle, int level, int option, char* value, int* size) {
    if (substitute::failing("getsockopt", WSAENOPROTOOPT))
        return SOCKET_ERROR;
    const int result = finished(::getsockopt(descriptor(handle), level, option, value, host_size(size)));
    if (result == 0 && level == SOL_SOCKET && option == SO_ERROR) {
        int& code = *reinterpret_cast<int*>(value);
        code = scripted_result(socket_error).value_or(code_of_errno(code));
    }
    return result;
}

int connect(SOCKET handle, const sockaddr* address, int size) {
    if (substitute::failing("connect", WSAECONNREFUSED))
        return SOCKET_ERROR;
    const int result = finished(::connect(descriptor(handle), host_address(address), host_size(size)));
    // Winsock says "would block" where the host says "in progress".
    return result < 0 && errno == EINPROGRESS ? fail_with(WSAEWOULDBLOCK) : result;
}

int bind(SOCKET handle, const sockaddr* address, int size) {
    if (substitute::failing("bind", WSAEADDRINUSE))
        return SOCKET_ERROR;
    return finished(::bind(descriptor(handle), host_address(address), host_size(size)));
}

int listen(SOCKET handle, int backlog) {
    if (substitute::failing("listen", WSAEADDRINUSE))
        return SOCKET_ERROR;
    return finished(::listen(descriptor(handle), backlog));
}

SOCKET accept(SOCKET handle, sockaddr* address, int* size) {
    if (substitute::failing("accept", WSAEMFILE))
        return INVALID_SOCKET;
    return opened(::accept4(descriptor(handle), host_address(address), host_size(size), SOCK_CLOEXEC));
}

int getsockname(SOCKET handle, sockaddr* address, int* size) {
    if (substitute::failing("getsockname", WSAENOTSOCK))
        return SOCKET_ERROR;
    return finished(::getsockname(descriptor(handle), host_address(address), host_size(size)));
}

int shutdown(SOCKET handle, int how) {
    if (substitute::failing("shutdown", WSAENOTCONN))
        return SOCKET_ERROR;
    return finished(::shutdown(descriptor(handle), how));
}

int send(SOCKET handle, const char* data, int size, int flags) {
    if (substitute::failing("send", WSAECONNRESET))
        return SOCKET_ERROR;
    if (const auto result = scripted_result("send"))
        return *result;
    // The host would end the process where Winsock returns an error.
    return finished(::send(descriptor(handle), data, static_cast<std::size_t>(size), flags | MSG_NOSIGNAL));
}

int recv(SOCKET handle, char* buffer, int size, int flags) {
    if (substitute::failing("recv", WSAECONNRESET))
        return SOCKET_ERROR;
    if (const auto result = scripted_result("recv"))
        return *result;
    return finished(::recv(descriptor(handle), buffer, static_cast<std::size_t>(size), flags));
}

int sendto(SOCKET handle, const char* data, int size, int flags, const sockaddr* address, int address_size) {
    if (substitute::failing("sendto", WSAENOBUFS))
        return SOCKET_ERROR;
    const auto* target = reinterpret_cast<const sockaddr_in*>(address);
    const auto length = static_cast<std::size_t>(size);
    if (keeps_datagram({target->sin_addr.s_addr, ntohs(target->sin_port), std::string(data, length)}))
        return size;
    return finished(::sendto(descriptor(handle), data, length, flags | MSG_NOSIGNAL, host_address(address),
                             host_size(address_size)));
}

int recvfrom(SOCKET handle, char* buffer, int size, int flags, sockaddr* address, int* address_size) {
    if (substitute::failing("recvfrom", WSAECONNRESET))
        return SOCKET_ERROR;
    // With MSG_TRUNC the host counts the whole datagram; Winsock fills the buffer and reports one too large.
    const int result = finished(::recvfrom(descriptor(handle), buffer, static_cast<std::size_t>(size),
                                           flags | MSG_TRUNC, host_address(address),
                                           address_size == nullptr ? nullptr : host_size(address_size)));
    return result > size ? fail_with(WSAEMSGSIZE) : result;
}

} // namespace winsock
