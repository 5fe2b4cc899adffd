#pragma once
/// The messages of the negotiation. All of them are indefinite elements that may end in fields unknown to the
/// reader.
///
///     60 80                  client_wants
///        02 len content         version, 0 to 65535
///        A1 80                  client_private_key
///           04 len bytes           name, at most 256 bytes
///           04 len bytes           domain, at most 1024 bytes
///           04 00                  id, at most 128 bytes, always empty
///           01 01 01               hasMasterKey, always true
///           01 01 01               hasHallmark, always true
///           01 01 01               testing, always true
///        00 00
///     00 00
///
///     61 80                  server_offers
///        02 len content         version, 0 to 65535
///        A1 80                  server_private_key
///           01 01 content          hasMasterKey
///           01 01 content          hasHallmark
///        00 00
///     00 00
///
///     63 80                  negotiate_nack, in place of server_offers
///        04 len bytes           reason, at most 1024 bytes
///     00 00
///
///     62 80 00 00            the client's closing element
#include "protocol/stream.h"

inline constexpr std::uint32_t tag_client_wants = 3;        // 60
inline constexpr std::uint32_t tag_server_offers = 11;      // 61
inline constexpr std::uint32_t tag_closing = 19;            // 62
inline constexpr std::uint32_t tag_negotiate_nack = 27;     // 63
inline constexpr std::uint32_t tag_client_private_key = 13; // A1
inline constexpr std::uint32_t tag_server_private_key = 13; // A1

// `tag` is the identifier if the caller has read it; if it is 0, the reader reads it.

/// `name` and `domain` may be null, which is the same as empty.
const char* write_client_wants(Stream* stream, std::int32_t version, const char* name, const char* domain);
const char* write_closing(Stream* stream);
/// Reads only the head of the element and the version; the caller reads the rest.
const char* read_server_offers_incomplete(Stream* stream, std::int32_t* version, std::uint32_t tag);
/// Reads the whole element. The two values are not used.
const char* read_server_private_key(Stream* stream, std::uint32_t tag);
/// Reads the whole element. The caller frees `*reason` with `free`; it is null on failure.
const char* read_negotiate_nack(Stream* stream, char** reason, std::uint32_t tag);

/// Collects a message and sends it with one call. If it were sent in two pieces, the second would wait for
/// the acknowledgement of the first, because Nagle's algorithm is on, and a peer that answers and closes
/// early would refuse it.
class Composition {
public:
    Composition();
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;

    /// A stream for writing only.
    Stream* stream() { return &stream_; }
    /// Sends what was written so far.
    const char* send_over(Stream* connection) const;

private:
    Stream stream_;
    std::uint8_t octets_[1311]; // client_wants with the longest name and domain
};
