#include "handshake/handshake.h"

#include "protocol/heads.h"
#include "protocol/messages.h"
#include "protocol/values.h"

namespace handshake {
namespace {

const char* end_of_packet(Stream*, void*, std::size_t count) {
    return count == 0 ? nullptr : "Peer closed connection unexpectedly";
}
const char* no_room(Stream*, const void*, std::size_t) { return "no room"; }

const Stream operations = {.read = end_of_packet, .socket_write_buf = no_room};

/// Collects what is written, like a message that is about to be sent.
Stream writing(Packet& packet) {
    Stream stream = operations;
    stream.room = packet.octets;
    stream.room_end = packet.octets + sizeof packet.octets;
    return stream;
}
/// Has the octets in its buffer, like an answer that was received.
Stream reading(const Packet& packet) {
    Stream stream = operations;
    stream.next = packet.octets;
    stream.end = packet.octets + packet.size;
    return stream;
}

bool written(Packet& packet, const Stream& stream, const char* problem) {
    packet.size = static_cast<std::size_t>(stream.room - packet.octets);
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

bool write_request(const Request& request, Packet& packet) {
    Stream stream = writing(packet);
    const auto version = static_cast<std::int32_t>(request.version);
    const char* problem = write_client_wants(&stream, version, request.name, request.domain);
    return written(packet, stream, problem);
}

bool read_text(Stream* stream, std::size_t max, Text& text) {
    char* content = nullptr;
    const char* problem = read_string(stream, static_cast<std::uint32_t>(max), &content, 0);
    text.reset(content);
    return problem == nullptr;
}

bool read_request(const Packet& packet, HeardRequest& heard) {
    Stream stream = reading(packet);
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
    Stream stream = writing(packet);
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
    Stream stream = reading(packet);
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
    Stream stream = writing(packet);
    const char* problem = write_closing(&stream);
    return written(packet, stream, problem);
}

bool read_closing(const Packet& packet) {
    Stream stream = reading(packet);
    return enter_element(&stream, tag_closing) && skip_to_eol(&stream) == nullptr;
}

} // namespace

const Codec our_codec = {"tavrinconfig", write_request,         read_request, write_offer,
                         read_offer,     write_closing_element, read_closing};

} // namespace handshake
