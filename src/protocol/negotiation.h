#pragma once
/// The exchange at the start of an agent's connection, which shows whether the server accepts the agent.
/// The octets are described in protocol/messages.h.
#include "protocol/stream.h"

inline constexpr int negotiation_accepted = 0;
inline constexpr int negotiation_rejected = 1; // the server refused this agent
inline constexpr int negotiation_failed = 2;   // before or during the exchange

/// Negotiates over `stream`, which stays open. `name` and `domain` may be null; `status` (one of the three
/// values above) may be absent. Returns null when the server accepts, else the message for the user.
const char* negotiate(Stream* stream, const char* name, const char* domain, int* status);

/// Connects to `host` (a name or a dotted IPv4 address), negotiates and closes. If `name` is null or empty,
/// the connection's local address in dotted form is used instead, and `*used_name` receives a copy, which the
/// caller frees with `free`; otherwise `*used_name` is null. `used_name` and `status` may be null.
const char* connect_and_negotiate(const char* host, std::uint16_t port, const char* name, const char* domain,
                                  char** used_name, int* status);
