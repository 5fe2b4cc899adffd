#include "support/memory_stream.h"

MemoryStream::MemoryStream(const Octets& sent)
    : Stream{.read = read_octets,
             .socket_write_buf = write_octets,
             .socket_flush = flush_octets,
             .wait_readable = can_read,
             .close = close_stream} {
    sends(sent);
}

void MemoryStream::sends(const Octets& unit, std::uint64_t times) {
    if (!unit.empty() && times > 0)
        script_.push_back({unit, times});
}

void MemoryStream::arrives_in_pieces_of(std::size_t size) { piece_size_ = size; }

std::uint64_t MemoryStream::unread() const {
    auto count = static_cast<std::uint64_t>(end - next);
    for (std::size_t i = part_; i < script_.size(); ++i)
        count += script_[i].unit.size() * script_[i].times;
    return part_ < script_.size() ? count - copy_ * script_[part_].unit.size() - offset_ : count;
}

void MemoryStream::break_after(std::size_t count, const char* text) {
    room_ = count;
    break_text_ = text;
}

bool MemoryStream::next_octet(std::uint8_t* octet) {
    if (part_ == script_.size())
        return false;
    *octet = script_[part_].unit[offset_];
    if (++offset_ < script_[part_].unit.size())
        return true;
    offset_ = 0;
    if (++copy_ < script_[part_].times)
        return true;
    copy_ = 0;
    ++part_;
    return true;
}

bool MemoryStream::next_piece() {
    piece_.clear();
    for (std::uint8_t octet = 0; piece_.size() < piece_size_ && next_octet(&octet);)
        piece_.push_back(octet);
    next = piece_.data();
    end = next + piece_.size();
    return !piece_.empty();
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
    if (self->piece_size_ > 0)
        return self->read_pieces(octets, count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!self->next_octet(octets + i))
            return "Peer closed connection unexpectedly";
    }
    return nullptr;
}

const char* MemoryStream::write_octets(Stream* stream, const void* bytes, std::size_t count) {
    auto* self = static_cast<MemoryStream*>(stream);
    if (self->received.size() + count > self->room_)
        return self->break_text_;
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
