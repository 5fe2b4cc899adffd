#pragma once
/// Datagrams over IPv4, for server discovery. Texts, addresses and ports as in net/socket.h, but the texts
/// live in buffers of their own, one for each operation.
#include "net/socket.h"

/// False when the system has no socket to give.
bool udp_open(Socket* out);
/// Allows or forbids broadcasts.
const char* udp_enable_broadcast(Socket& socket, bool on);
/// Sends one datagram. An unreachable network or host is no failure.
const char* udp_send_to(Socket& socket, std::uint32_t address, std::uint16_t port, const void* bytes,
                        std::size_t length);
/// Receives one datagram and its sender; `*length` is the capacity of `buffer`, then the octets received. A
/// datagram that does not fit is a failure with WSAEMSGSIZE as last error.
const char* udp_receive_from(Socket& socket, std::uint32_t* address, std::uint16_t* port, void* buffer,
                             std::size_t* length);
/// Closes the socket; false when it is none, or closing failed.
bool udp_close(Socket& socket);
