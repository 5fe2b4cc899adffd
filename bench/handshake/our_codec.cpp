#include "handshake/handshake.h"

#include "protocol/lengths.h"
#include "protocol/messages.h"
#include "protocol/numbers.h"
#include "protocol/skipping.h"
#include "protocol/strings.h"
#include "protocol/tags.h"

#include <cstring>

namespace handshake {
namespace {

/// Writes into a packet, reads out of it.
struct PacketStream : Stream {
    std::uint8_t* next;
    std::uint8_t* end;
};

/// Most reads are of one octet and most writes of two or three, for which a call of memcpy is the larger
/// part.
void copy_few(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    if (count > 3) {
        std::memcpy(to, from, count);
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        to[i] = from[i];
}

const char* read_octets(Stream* stream, void* buffer, std::size_t count) {
    auto* self = static_cast<PacketStream*>(stream);
    if (count > static_cast<std::size_t>(self->end - self->next))
        return "Peer closed connection unexpectedly";
    copy_few(static_cast<std::uint8_t*>(buffer), self->next, count);
    self->next += count;
    return nullptr;
}

const char* write_octets(Stream* stream, const void* bytes, std::size_t count) {
    auto* self = static_cast<PacketStream*>(stream);
    if (count > static_cast<std::size_t>(self->end - self->next))
        return "no room";
    copy_few(self->next, static_cast<const std::uint8_t*>(bytes), count);
    self->next += count;
    return nullptr;
}

const char* flush_octets(Stream*) { return nullptr; }
bool can_read(Stream*, int) { return true; }
void close_stream(Stream*) {}

PacketStream stream_over(std::uint8_t* octets, std::size_t size) {
    PacketStream stream;
    stream.read = read_octets;
    stream.socket_write_buf = write_octets;
    stream.socket_flush = flush_octets;
    stream.wait_readable = can_read;
    stream.close = close_stream;
    stream.pending = false;
    stream.next = octets;
    stream.end = octets + size;
    return stream;
}
PacketStream writing(Packet& packet) { return stream_over(packet.octets, sizeof packet.octets); }
PacketStream reading(const Packet& packet) {
    return stream_over(const_cast<std::uint8_t*>(packet.octets), packet.size);
}

bool written(Packet& packet, const PacketStream& stream, const char* problem) {
    packet.size = static_cast<std::size_t>(stream.next - packet.octets);
    return problem == nullptr;
}

bool open_element(Stream* stream, std::uint32_t tag) {
    return write_tag(stream, tag) == nullptr && write_indefinite(stream) == nullptr;
}
bool enter_element(Stream* stream, std::uint32_t expected) {
    std::uint32_t tag = 0;
    std::uint32_t length = 0;
    bool indefinite = false;
    return read_tag(stream, &tag) == nullptr && tag == expected &&
           read_length(stream, &length, &indefinite) == nullptr && indefinite;
}

bool write_wishes(const Wishes& wishes, Packet& packet) {
    PacketStream stream = writing(packet);
    const auto version = static_cast<std::int32_t>(wishes.version);
    const char* problem = write_client_wants(&stream, version, wishes.name, wishes.domain);
    return written(packet, stream, problem);
}

bool read_text(Stream* stream, std::size_t max, Text& text) {
    char* content = nullptr;
    const char* problem = read_string(stream, static_cast<std::uint32_t>(max), &content, 0);
    text.reset(content);
    return problem == nullptr;
}

bool read_wishes(const Packet& packet, HeardWishes& heard) {
    PacketStream stream = reading(packet);
    std::int32_t version = 0;
    const bool good =
        enter_element(&stream, tag_client_wants) &&
        read_signed_int(&stream, 0, highest_version, &version, 0) == nullptr &&
        enter_element(&stream, tag_client_private_key) && read_text(&stream, longest_name, heard.name) &&
        read_text(&stream, longest_domain, heard.domain) && read_text(&stream, longest_id, heard.id) &&
        read_bool(&stream, &heard.has_master_key, 0) == nullptr &&
        read_bool(&stream, &heard.has_hallmark, 0) == nullptr &&
        read_bool(&stream, &heard.testing, 0) == nullptr && skip_to_eol(&stream) == nullptr &&
        skip_to_eol(&stream) == nullptr;
    heard.version = version;
    return good;
}

bool write_offer(const Offer& offer, Packet& packet) {
    PacketStream stream = writing(packet);
    const bool good =
        open_element(&stream, tag_server_offers) &&
        write_signed_int(&stream, 0, highest_version, static_cast<std::int32_t>(offer.version)) == nullptr &&
        open_element(&stream, tag_server_private_key) &&
        write_bool(&stream, offer.has_master_key) == nullptr &&
        write_bool(&stream, offer.has_hallmark) == nullptr && write_end_of_contents(&stream) == nullptr &&
        write_end_of_contents(&stream) == nullptr;
    return written(packet, stream, nullptr) && good;
}

bool read_offer(const Packet& packet, Offer& heard) {
    PacketStream stream = reading(packet);
    std::int32_t version = 0;
    const bool good = enter_element(&stream, tag_server_offers) &&
                      read_signed_int(&stream, 0, highest_version, &version, 0) == nullptr &&
                      enter_element(&stream, tag_server_private_key) &&
                      read_bool(&stream, &heard.has_master_key, 0) == nullptr &&
                      read_bool(&stream, &heard.has_hallmark, 0) == nullptr &&
                      skip_to_eol(&stream) == nullptr && skip_to_eol(&stream) == nullptr;
    heard.version = version;
    return good;
}

bool write_closing_element(Packet& packet) {
    PacketStream stream = writing(packet);
    const char* problem = write_closing(&stream);
    return written(packet, stream, problem);
}

bool read_closing(const Packet& packet) {
    PacketStream stream = reading(packet);
    return enter_element(&stream, tag_closing) && skip_to_eol(&stream) == nullptr;
}

} // namespace

void stream_calls_of_agent(const Packet& answer, Packet& question, Packet& closing) {
    // Elements of the question with the names of the benchmark; identifiers, lengths and contents of the
    // answer.
    static constexpr std::size_t written_sizes[] = {2, 4, 2, 18, 13, 2, 3, 3, 3, 2, 2};
    static constexpr std::size_t read_sizes[] = {1, 1, 1, 1, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    static constexpr std::size_t closing_sizes[] = {2, 2};
    const std::uint8_t octets[32] = {};
    std::uint8_t heard[32];
    PacketStream to = writing(question);
    for (const std::size_t size : written_sizes)
        to.socket_write_buf(&to, octets, size);
    PacketStream from = reading(answer);
    for (const std::size_t size : read_sizes)
        from.read(&from, heard, size);
    PacketStream end = writing(closing);
    for (const std::size_t size : closing_sizes)
        end.socket_write_buf(&end, octets, size);
}

const Codec our_codec = {"tavrinconfig", write_wishes,          read_wishes, write_offer,
                         read_offer,     write_closing_element, read_closing};

} // namespace handshake
