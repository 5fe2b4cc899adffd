// libtasn1's DER primitives. They support identifiers, lengths and simple types. The contents of an element
// are written first, after room for the longest head, and moved when the head is known.
#include "handshake/handshake.h"

#include <cstring>
#include <libtasn1.h>

namespace handshake {
namespace {

/// The first octet of an element, as class and number.
struct Identifier {
    unsigned char kind;
    unsigned long number;
};
constexpr Identifier wants = {ASN1_CLASS_APPLICATION | ASN1_CLASS_STRUCTURED, 0};
constexpr Identifier offers = {ASN1_CLASS_APPLICATION | ASN1_CLASS_STRUCTURED, 1};
constexpr Identifier closing = {ASN1_CLASS_APPLICATION | ASN1_CLASS_STRUCTURED, 2};
constexpr Identifier boolean = {ASN1_CLASS_UNIVERSAL, ASN1_TAG_BOOLEAN};
constexpr Identifier integer = {ASN1_CLASS_UNIVERSAL, ASN1_TAG_INTEGER};
constexpr Identifier private_key = {ASN1_CLASS_CONTEXT_SPECIFIC | ASN1_CLASS_STRUCTURED, 1};

class Writer {
public:
    explicit Writer(Packet& packet) : packet_(packet) { packet_.size = 0; }

    /// The place of the new element's head.
    std::size_t open() {
        packet_.size += longest_head;
        return packet_.size - longest_head;
    }
    bool close(std::size_t head, const Identifier& identifier) {
        const std::size_t content = packet_.size - head - longest_head;
        std::uint8_t* const octets = packet_.octets + head;
        std::uint8_t length[longest_head];
        int length_size = longest_head - 1;
        asn1_length_der(content, length, &length_size);
        octets[0] = static_cast<std::uint8_t>(identifier.kind | identifier.number);
        std::memcpy(octets + 1, length, static_cast<std::size_t>(length_size));
        std::memmove(octets + 1 + length_size, octets + longest_head, content);
        packet_.size = head + 1 + static_cast<std::size_t>(length_size) + content;
        return true;
    }
    bool number(long value) {
        if (value < 0 || value > highest_version)
            return false;
        const std::uint8_t content[] = {static_cast<std::uint8_t>(value >> 16),
                                        static_cast<std::uint8_t>(value >> 8),
                                        static_cast<std::uint8_t>(value)};
        unsigned skipped = 0; // the shortest form that keeps the sign
        while (skipped < 2 && content[skipped] == 0 && content[skipped + 1] < 0x80)
            ++skipped;
        return simple(ASN1_ETYPE_INTEGER, content + skipped, sizeof content - skipped);
    }
    bool truth(bool value) {
        const std::uint8_t content = value ? 0xFF : 0x00;
        return simple(ASN1_ETYPE_BOOLEAN, &content, 1);
    }
    bool text(const char* text, std::size_t max) {
        const std::size_t length = std::strlen(text);
        return length <= max &&
               simple(ASN1_ETYPE_OCTET_STRING, reinterpret_cast<const std::uint8_t*>(text), length);
    }

private:
    static constexpr int longest_head = 6;

    bool simple(unsigned type, const std::uint8_t* content, std::size_t size) {
        std::uint8_t* const octets = packet_.octets + packet_.size;
        auto head = static_cast<unsigned>(sizeof packet_.octets - packet_.size);
        if (asn1_encode_simple_der(type, content, static_cast<unsigned>(size), octets, &head) !=
                ASN1_SUCCESS ||
            packet_.size + head + size > sizeof packet_.octets)
            return false;
        std::memcpy(octets + head, content, size);
        packet_.size += head + size;
        return true;
    }

    Packet& packet_;
};

class Reader {
public:
    explicit Reader(const Packet& packet) : next_(packet.octets), end_(packet.octets + packet.size) {}

    bool enter(const Identifier& expected) {
        long length = 0;
        return head(expected, length) && length == left();
    }
    bool number(long& value) {
        long size = 0;
        if (!head(integer, size) || size == 0 || size > 4)
            return false;
        value = static_cast<signed char>(*next_++);
        while (--size > 0)
            value = value << 8 | *next_++;
        return value >= 0 && value <= highest_version;
    }
    bool truth(bool& value) {
        long size = 0;
        if (!head(boolean, size) || size != 1)
            return false;
        value = *next_++ != 0;
        return true;
    }
    bool text(std::size_t max, Text& text) {
        const unsigned char* content = nullptr;
        unsigned size = 0;
        if (asn1_decode_simple_der(ASN1_ETYPE_OCTET_STRING, next_, static_cast<unsigned>(left()), &content,
                                   &size) != ASN1_SUCCESS ||
            size > max)
            return false;
        next_ = content + size;
        text.reset(static_cast<char*>(std::malloc(std::size_t{size} + 1)));
        std::memcpy(text.get(), content, size);
        text.get()[size] = '\0';
        return true;
    }
    bool at_end() const { return next_ == end_; }

private:
    int left() const { return static_cast<int>(end_ - next_); }
    /// Only texts have a decoder of their own.
    bool head(const Identifier& expected, long& length) {
        unsigned char kind = 0;
        int size = 0;
        unsigned long number = 0;
        if (asn1_get_tag_der(next_, left(), &kind, &size, &number) != ASN1_SUCCESS || kind != expected.kind ||
            number != expected.number)
            return false;
        next_ += size;
        length = asn1_get_length_der(next_, left(), &size);
        next_ += size;
        return length >= 0 && length <= left();
    }

    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

bool write_request(const Request& request, Packet& packet) {
    Writer to(packet);
    const std::size_t outer = to.open();
    if (!to.number(request.version))
        return false;
    const std::size_t inner = to.open();
    return to.text(request.name, longest_name) && to.text(request.domain, longest_domain) &&
           to.text("", longest_id) && to.truth(request.has_master_key) && to.truth(request.has_hallmark) &&
           to.truth(request.testing) && to.close(inner, private_key) && to.close(outer, wants);
}

bool read_request(const Packet& packet, HeardRequest& heard) {
    Reader from(packet);
    return from.enter(wants) && from.number(heard.version) && from.enter(private_key) &&
           from.text(longest_name, heard.name) && from.text(longest_domain, heard.domain) &&
           from.text(longest_id, heard.id) && from.truth(heard.has_master_key) &&
           from.truth(heard.has_hallmark) && from.truth(heard.testing) && from.at_end();
}

bool write_offer(const Offer& offer, Packet& packet) {
    Writer to(packet);
    const std::size_t outer = to.open();
    if (!to.number(offer.version))
        return false;
    const std::size_t inner = to.open();
    return to.truth(offer.has_master_key) && to.truth(offer.has_hallmark) && to.close(inner, private_key) &&
           to.close(outer, offers);
}

bool read_offer(const Packet& packet, Offer& heard) {
    Reader from(packet);
    return from.enter(offers) && from.number(heard.version) && from.enter(private_key) &&
           from.truth(heard.has_master_key) && from.truth(heard.has_hallmark) && from.at_end();
}

bool write_closing(Packet& packet) {
    Writer to(packet);
    return to.close(to.open(), closing);
}

bool read_closing(const Packet& packet) {
    Reader from(packet);
    return from.enter(closing) && from.at_end();
}

} // namespace

const Codec tasn1_codec = {"libtasn1", write_request, read_request, write_offer,
                           read_offer, write_closing, read_closing};

} // namespace handshake
