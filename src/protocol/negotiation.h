#pragma once
/// The exchange that opens an agent's connection to a server; it proves that the server accepts this agent.
/// The octets are described in protocol/messages.h.
#include "protocol/stream.h"

inline constexpr int negotiation_accepted = 0;
inline constexpr int negotiation_rejected = 1; // the server answered that it does not want this agent
inline constexpr int negotiation_failed = 2;   // before or during the exchange

/// Negotiates over `stream`, which stays open. `name` and `domain` may be null; `status` (one of the three
/// values above) may be absent. Returns null when the server accepts, else the message for the user.
const char* negotiate(Stream* stream, const char* name, const char* domain, int* status);

/// Connects to `host` (a name or a dotted IPv4 address), negotiates and closes. An absent or empty `name` is
/// replaced by the connection's local address in dotted form, of which `*used_name` receives a copy (else
/// null), which the caller frees with `free`. `used_name` and `status` may be absent.
const char* connect_and_negotiate(const char* host, std::uint16_t port, const char* name, const char* domain,
                                  char** used_name, int* status);
