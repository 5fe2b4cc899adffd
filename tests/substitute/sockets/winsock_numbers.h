#pragma once
/// The constants for Winsock calls. They are those of the host's socket calls, to which they are passed
/// unchanged; a program that uses the names does not notice. They have a header of their own because the
/// host's headers define the same names as macros.
#include "substitute/types.h"

namespace winsock {

inline constexpr int AF_INET = 2;
inline constexpr int SOCK_STREAM = 1;
inline constexpr int SOCK_DGRAM = 2;
inline constexpr int IPPROTO_TCP = 6;
inline constexpr int TCP_NODELAY = 1;
inline constexpr int SOL_SOCKET = 1;
inline constexpr int SO_ERROR = 4;
inline constexpr int SO_BROADCAST = 6;
inline constexpr int SO_LINGER = 13;
inline constexpr ULONG INADDR_ANY = 0;
inline constexpr ULONG INADDR_NONE = 0xFFFFFFFF;

} // namespace winsock
