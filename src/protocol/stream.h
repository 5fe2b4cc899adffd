#pragma once
/// A stream of octets to and from one peer. The record holds its operations, so that codec and negotiation
/// work over any stream: a TCP connection, or the memory of a test.
///
/// Operations return null on success and otherwise the message for the user, which is valid until two further
/// messages are formatted. After a failure, only `close` may be called.
#include "net/socket.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

struct Stream {
    /// Reads exactly `count` octets. Flushes first when writes are pending; a count of 0 does nothing.
    const char* (*read)(Stream* stream, void* buffer, std::size_t count) = nullptr;
    /// Sends `count` octets at once: there is no send buffer.
    const char* (*socket_write_buf)(Stream* stream, const void* bytes, std::size_t count) = nullptr;
    /// Sends what earlier writes have buffered; a TCP connection buffers nothing.
    const char* (*socket_flush)(Stream* stream) = nullptr;
    /// True when octets (or the peer's close) can be read within `seconds`.
    bool (*wait_readable)(Stream* stream, int seconds) = nullptr;
    /// Flushes what is pending, closes the connection and frees the record.
    void (*close)(Stream* stream) = nullptr;

    /// Set by every write, cleared by a flush and by a completed read.
    bool pending = false;
    Socket socket = {};

    /// Octets that were received and not read yet; both null in a stream without a buffer. Readers use the
    /// functions below.
    const std::uint8_t* next = nullptr;
    const std::uint8_t* end = nullptr;
    /// Memory into which writers may put octets instead of sending them; both null in a stream that sends at
    /// once.
    std::uint8_t* room = nullptr;
    std::uint8_t* room_end = nullptr;
};

/// Connects to the IPv4 `address` (network byte order) and `port` and returns a new record, which its `close`
/// frees. `flags` are those of `socket_connect`; the bit that marks a buffered stream is added. On
/// failure `*stream` is null.
const char* stream_open(Stream** stream, std::uint32_t address, std::uint16_t port, unsigned flags);

// These use the stream's buffers directly and call its operations only when these are empty or full.

/// The number of buffered octets; 0 while writes are pending, because `read` must flush first.
inline std::size_t at_hand(const Stream* stream) {
    return stream->pending ? 0 : static_cast<std::size_t>(stream->end - stream->next);
}

/// Like `read`.
inline const char* read_octets(Stream* stream, void* buffer, std::size_t count) {
    if (count == 0 || count > at_hand(stream))
        return stream->read(stream, buffer, count);
    std::memcpy(buffer, stream->next, count);
    stream->next += count;
    return nullptr;
}

inline const char* read_octet(Stream* stream, std::uint8_t* octet) {
    if (at_hand(stream) == 0)
        return stream->read(stream, octet, 1);
    *octet = *stream->next++;
    return nullptr;
}

/// Like `socket_write_buf`.
inline const char* write_octets(Stream* stream, const void* bytes, std::size_t count) {
    if (count > static_cast<std::size_t>(stream->room_end - stream->room))
        return stream->socket_write_buf(stream, bytes, count);
    std::memcpy(stream->room, bytes, count);
    stream->room += count;
    return nullptr;
}
