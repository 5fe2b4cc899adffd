// net-snmp's asn_build_* and asn_parse_*. They support only definite lengths; an element's header is written
// once to reserve its place and again when its length is known. There is no boolean: an INTEGER of 0 or 1
// replaces it.
#include "handshake/handshake.h"

#include <cstring>
#include <net-snmp/net-snmp-config.h>

#include <net-snmp/library/asn1.h>

namespace handshake {
namespace {

constexpr u_char wants = 0x60;
constexpr u_char offers = 0x61;
constexpr u_char closing = 0x62;
constexpr u_char private_key = 0xA1;

class Writer {
public:
    explicit Writer(Packet& packet) : packet_(packet), next_(packet.octets), room_(sizeof packet.octets) {}

    /// The place of the new element's header, null where there is no room.
    u_char* open(u_char type) {
        u_char* header = next_;
        return step(asn_build_sequence(next_, &room_, type, 0)) ? header : nullptr;
    }
    bool close(u_char* header, u_char type) {
        constexpr std::size_t header_size = 4;
        std::size_t header_room = header_size;
        const auto length = static_cast<std::size_t>(next_ - header) - header_size;
        return asn_build_sequence(header, &header_room, type, length) != nullptr;
    }
    bool number(long value) {
        return value >= 0 && value <= highest_version &&
               step(asn_build_int(next_, &room_, ASN_INTEGER, &value, sizeof value));
    }
    bool text(const char* text, std::size_t max) {
        const std::size_t length = std::strlen(text);
        return length <= max && step(asn_build_string(next_, &room_, ASN_OCTET_STR,
                                                      reinterpret_cast<const u_char*>(text), length));
    }
    bool finish() {
        packet_.size = static_cast<std::size_t>(next_ - packet_.octets);
        return true;
    }

private:
    bool step(u_char* next) {
        if (next != nullptr)
            next_ = next;
        return next != nullptr;
    }

    Packet& packet_;
    u_char* next_;
    std::size_t room_;
};

class Reader {
public:
    explicit Reader(const Packet& packet) : next_(const_cast<u_char*>(packet.octets)), left_(packet.size) {}

    bool enter(u_char expected) {
        u_char type = 0;
        return step(asn_parse_sequence(next_, &left_, &type, expected, "handshake"));
    }
    bool number(long& value, long max) {
        u_char type = 0;
        return step(asn_parse_int(next_, &left_, &type, &value, sizeof value)) && type == ASN_INTEGER &&
               value >= 0 && value <= max;
    }
    bool truth(bool& value) {
        long number = 0;
        const bool good = this->number(number, 1);
        value = number != 0;
        return good;
    }
    bool text(std::size_t max, Text& text) {
        u_char content[longest_domain];
        std::size_t length = max; // the longest accepted text
        u_char type = 0;
        if (!step(asn_parse_string(next_, &left_, &type, content, &length)) || type != ASN_OCTET_STR)
            return false;
        text.reset(static_cast<char*>(std::malloc(length + 1)));
        std::memcpy(text.get(), content, length);
        text.get()[length] = '\0';
        return true;
    }
    bool at_end() const { return left_ == 0; }

private:
    bool step(u_char* next) {
        if (next != nullptr)
            next_ = next;
        return next != nullptr;
    }

    u_char* next_;
    std::size_t left_;
};

bool write_request(const Request& request, Packet& packet) {
    Writer to(packet);
    u_char* outer = to.open(wants);
    if (outer == nullptr || !to.number(request.version))
        return false;
    u_char* inner = to.open(private_key);
    return inner != nullptr && to.text(request.name, longest_name) &&
           to.text(request.domain, longest_domain) && to.text("", longest_id) &&
           to.number(request.has_master_key) && to.number(request.has_hallmark) &&
           to.number(request.testing) && to.close(inner, private_key) && to.close(outer, wants) &&
           to.finish();
}

bool read_request(const Packet& packet, HeardRequest& heard) {
    Reader from(packet);
    return from.enter(wants) && from.number(heard.version, highest_version) && from.enter(private_key) &&
           from.text(longest_name, heard.name) && from.text(longest_domain, heard.domain) &&
           from.text(longest_id, heard.id) && from.truth(heard.has_master_key) &&
           from.truth(heard.has_hallmark) && from.truth(heard.testing) && from.at_end();
}

bool write_offer(const Offer& offer, Packet& packet) {
    Writer to(packet);
    u_char* outer = to.open(offers);
    if (outer == nullptr || !to.number(offer.version))
        return false;
    u_char* inner = to.open(private_key);
    return inner != nullptr && to.number(offer.has_master_key) && to.number(offer.has_hallmark) &&
           to.close(inner, private_key) && to.close(outer, offers) && to.finish();
}

bool read_offer(const Packet& packet, Offer& heard) {
    Reader from(packet);
    return from.enter(offers) && from.number(heard.version, highest_version) && from.enter(private_key) &&
           from.truth(heard.has_master_key) && from.truth(heard.has_hallmark) && from.at_end();
}

bool write_closing(Packet& packet) {
    Writer to(packet);
    u_char* element = to.open(closing);
    return element != nullptr && to.close(element, closing) && to.finish();
}

bool read_closing(const Packet& packet) {
    Reader from(packet);
    return from.enter(closing) && from.at_end();
}

} // namespace

const Codec snmp_codec = {"net-snmp", write_request, read_request, write_offer,
                          read_offer, write_closing, read_closing};

} // namespace handshake
