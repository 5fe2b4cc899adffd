#include "support/memory_stream.h"

MemoryStream::MemoryStream(const Octets& sent)
    : Stream{read_octets, write_octets, flush_octets, can_read, close_stream, false, {}} {
    sends(sent);
}

void MemoryStream::sends(const Octets& unit, std::uint64_t times) {
    if (!unit.empty() && times > 0)
        script.push_back({unit, times});
}

void MemoryStream::arrives_in_pieces_of(std::size_t size) { piece_size = size; }

std::uint64_t MemoryStream::unread() const {
    auto count = static_cast<std::uint64_t>(end - next);
    for (std::size_t i = part; i < script.size(); ++i)
        count += script[i].unit.size() * script[i].times;
    return part < script.size() ? count - copy * script[part].unit.size() - offset : count;
}

void MemoryStream::break_after(std::size_t count, const char* text) {
    room = count;
    break_text = text;
}

bool MemoryStream::next_octet(std::uint8_t* octet) {
    if (part == script.size())
        return false;
    *octet = script[part].unit[offset];
    if (++offset < script[part].unit.size())
        return true;
    offset = 0;
    if (++copy < script[part].times)
        return true;
    copy = 0;
    ++part;
    return true;
}

bool MemoryStream::next_piece() {
    piece.clear();
    for (std::uint8_t octet = 0; piece.size() < piece_size && next_octet(&octet);)
        piece.push_back(octet);
    next = piece.data();
    end = next + piece.size();
    return !piece.empty();
}

const char* MemoryStream::read_pieces(std::uint8_t* octets, std::size_t count) {
    while (count > 0) {
        if (next == end && !next_piece())
            return "Peer closed connection unexpectedly";
        *octets++ = *next++;
        --count;
    }
    return nullptr;
}

const char* MemoryStream::read_octets(Stream* stream, void* buffer, std::size_t count) {
    auto* self = static_cast<MemoryStream*>(stream);
    if (count == 0)
        return nullptr;
    if (self->pending)
        self->socket_flush(self);
    auto* octets = static_cast<std::uint8_t*>(buffer);
    if (self->piece_size > 0)
        return self->read_pieces(octets, count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!self->next_octet(octets + i))
            return "Peer closed connection unexpectedly";
    }
    return nullptr;
}

const char* MemoryStream::write_octets(Stream* stream, const void* bytes, std::size_t count) {
    auto* self = static_cast<MemoryStream*>(stream);
    if (self->received.size() + count > self->room)
        return self->break_text;
    const auto* octets = static_cast<const std::uint8_t*>(bytes);
    self->received.insert(self->received.end(), octets, octets + count);
    self->pending = true;
    ++self->writes;
    return nullptr;
}

const char* MemoryStream::flush_octets(Stream* stream) {
    stream->pending = false;
    ++static_cast<MemoryStream*>(stream)->flushes;
    return nullptr;
}

bool MemoryStream::can_read(Stream* stream, int) { return static_cast<MemoryStream*>(stream)->unread() > 0; }

void MemoryStream::close_stream(Stream* stream) { ++static_cast<MemoryStream*>(stream)->closes; }
