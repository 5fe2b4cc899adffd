#pragma once
/// The types and calls of winsock.h. The names live in a namespace of their own, because the C library has
/// functions and types of the same names.
#include "substitute/sockets/winsock_codes.h"
#include "substitute/types.h"

#include <sys/select.h>

using SOCKET = UINT_PTR;
inline constexpr SOCKET INVALID_SOCKET = ~SOCKET{0};
inline constexpr int SOCKET_ERROR = -1;
inline constexpr int SD_BOTH = 2;
inline constexpr LONG FIONBIO = 0x5421;

constexpr WORD MAKEWORD(int low, int high) { return static_cast<WORD>((low & 0xFF) | ((high & 0xFF) << 8)); }

namespace winsock {

struct WSADATA {
    WORD wVersion;
    WORD wHighVersion;
};

struct in_addr {
    ULONG s_addr;
};
struct sockaddr {
    WORD sa_family;
    char sa_data[14];
};
struct sockaddr_in {
    WORD sin_family;
    WORD sin_port;
    in_addr sin_addr;
    char sin_zero[8];
};
struct linger {
    int l_onoff;
    int l_linger;
};
struct hostent {
    char* h_name;
    char** h_aliases;
    int h_addrtype;
    int h_length;
    char** h_addr_list;
};

/// As on Windows a counted list of handles, so that a handle may have any value.
struct socket_set {
    UINT fd_count;
    SOCKET fd_array[64];
};
void add_to_set(SOCKET handle, socket_set* set);
bool is_in_set(SOCKET handle, const socket_set* set);

int WSAStartup(WORD version, WSADATA* data);
int WSAGetLastError();

SOCKET socket(int family, int type, int protocol);
int closesocket(SOCKET handle);
int ioctlsocket(SOCKET handle, LONG command, ULONG* argument);
int setsockopt(SOCKET handle, int level, int option, const char* value, int size);
int getsockopt(SOCKET handle, int level, int option, char* value, int* size);
int connect(SOCKET handle, const sockaddr* address, int size);
int bind(SOCKET handle, const sockaddr* address, int size);
int listen(SOCKET handle, int backlog);
SOCKET accept(SOCKET handle, sockaddr* address, int* size);
int getsockname(SOCKET handle, sockaddr* address, int* size);
int shutdown(SOCKET handle, int how);
int send(SOCKET handle, const char* data, int size, int flags);
int recv(SOCKET handle, char* buffer, int size, int flags);
int sendto(SOCKET handle, const char* data, int size, int flags, const sockaddr* address, int address_size);
int recvfrom(SOCKET handle, char* buffer, int size, int flags, sockaddr* address, int* address_size);
int select(int ignored, socket_set* read, socket_set* write, socket_set* except, const timeval* timeout);

ULONG inet_addr(const char* text);
hostent* gethostbyname(const char* name);

} // namespace winsock
