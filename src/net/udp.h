#pragma once
/// Datagrams over IPv4, for server discovery. Texts, addresses and ports are as in net/socket.h, but each
/// operation has its own buffer for its text.
#include "net/socket.h"

/// False if the system cannot create a socket.
bool udp_open(Socket* out);
/// Allows or forbids broadcasts.
const char* udp_enable_broadcast(Socket& socket, bool on);
/// Sends one datagram. Succeeds also if the network or host is unreachable.
const char* udp_send_to(Socket& socket, std::uint32_t address, std::uint16_t port, const void* bytes,
                        std::size_t length);
/// Receives one datagram and its sender; `*length` is the capacity of `buffer`, then the octets received. A
/// datagram that does not fit is a failure with WSAEMSGSIZE as last error.
const char* udp_receive_from(Socket& socket, std::uint32_t* address, std::uint16_t* port, void* buffer,
                             std::size_t* length);
/// Closes the socket; false if it is not a socket or closing failed.
bool udp_close(Socket& socket);
