#pragma once
/// The octets and the room that a stream has at hand, used without a call through its record.
#include "protocol/stream.h"

#include <cstring>

/// How many octets can be taken. None while writes are pending: the stream's own `read` flushes first.
inline std::size_t at_hand(const Stream* stream) {
    return stream->pending ? 0 : static_cast<std::size_t>(stream->end - stream->next);
}

/// As the stream's own `read`.
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

/// As the stream's own `socket_write_buf`.
inline const char* write_octets(Stream* stream, const void* bytes, std::size_t count) {
    if (count > static_cast<std::size_t>(stream->room_end - stream->room))
        return stream->socket_write_buf(stream, bytes, count);
    std::memcpy(stream->room, bytes, count);
    stream->room += count;
    return nullptr;
}
