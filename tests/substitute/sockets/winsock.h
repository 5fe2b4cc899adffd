#pragma once
/// The Winsock calls that the program and its tests' peers use, over the host's socket calls. Sockets are
/// real; differences between the two are hidden: error codes, the sets of `select`, datagrams that do not
/// fit.
#include "substitute/sockets/iphelper.h"
#include "substitute/sockets/winsock_calls.h"
#include "substitute/sockets/winsock_numbers.h"

namespace winsock {

constexpr WORD htons(WORD value) { return static_cast<WORD>((value >> 8) | (value << 8)); }
constexpr WORD ntohs(WORD value) { return htons(value); }
constexpr ULONG htonl(ULONG value) { return __builtin_bswap32(value); }
constexpr ULONG ntohl(ULONG value) { return htonl(value); }

} // namespace winsock

using namespace winsock;

#define fd_set winsock::socket_set
#undef FD_ZERO
#undef FD_SET
#undef FD_ISSET
#define FD_ZERO(set) ((set)->fd_count = 0)
#define FD_SET(handle, set) winsock::add_to_set(handle, set)
#define FD_ISSET(handle, set) winsock::is_in_set(handle, set)
