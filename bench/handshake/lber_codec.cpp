// OpenLDAP's liblber. It supports only definite lengths, so its elements have these. Its element records are
// reused for all messages; the octets that it writes are freed after each message.
#include "handshake/handshake.h"

#include <cstring>
#include <lber.h>

namespace handshake {
namespace {

constexpr ber_tag_t wants = 0x60;
constexpr ber_tag_t offers = 0x61;
constexpr ber_tag_t closing = 0x62;
constexpr ber_tag_t private_key = 0xA1;
constexpr ber_tag_t by_type = LBER_DEFAULT;

BerElement* kept_element() {
    static BerElement* const element = ber_alloc_t(LBER_USE_DER);
    return element;
}

class Writer {
public:
    Writer() { ber_init2(element(), nullptr, LBER_USE_DER); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { ber_free_buf(element()); }
    BerElement* element() const { return element_; }
    bool open(ber_tag_t tag) { return ber_start_seq(element(), tag) >= 0; }
    bool close() { return ber_put_seq(element()) >= 0; }
    bool number(long value) {
        return value >= 0 && value <= highest_version &&
               ber_put_int(element(), static_cast<ber_int_t>(value), by_type) >= 0;
    }
    bool truth(bool value) { return ber_put_boolean(element(), value ? 1 : 0, by_type) >= 0; }
    bool text(const char* text, std::size_t max) {
        const std::size_t length = std::strlen(text);
        return length <= max && ber_put_ostring(element(), text, length, by_type) >= 0;
    }
    bool finish(Packet& packet) {
        berval octets{};
        if (ber_flatten2(element(), &octets, 0) < 0 || octets.bv_len > sizeof packet.octets)
            return false;
        std::memcpy(packet.octets, octets.bv_val, octets.bv_len);
        packet.size = octets.bv_len;
        return true;
    }

private:
    BerElement* element_ = kept_element();
};

class Reader {
public:
    explicit Reader(const Packet& packet) {
        berval octets{packet.size, reinterpret_cast<char*>(const_cast<std::uint8_t*>(packet.octets))};
        ber_init2(element(), &octets, LBER_USE_DER);
    }
    BerElement* element() const { return element_; }
    bool enter(ber_tag_t tag) {
        ber_len_t length = 0;
        return ber_skip_tag(element(), &length) == tag;
    }
    bool number(long& value) {
        ber_int_t number = 0;
        const bool good = ber_get_int(element(), &number) == LBER_INTEGER;
        value = number;
        return good && number >= 0 && number <= highest_version;
    }
    bool truth(bool& value) {
        ber_int_t number = 0;
        ber_len_t length = 0;
        const bool good = ber_peek_tag(element(), &length) == LBER_BOOLEAN && length == 1 &&
                          ber_get_boolean(element(), &number) == LBER_BOOLEAN;
        value = number != 0;
        return good;
    }
    bool text(std::size_t max, Text& text) {
        ber_len_t length = 0;
        if (ber_peek_tag(element(), &length) != LBER_OCTETSTRING || length > max)
            return false;
        char* content = nullptr;
        const bool good = ber_get_stringa(element(), &content) == LBER_OCTETSTRING;
        text.reset(content);
        return good;
    }
    /// Skips fields after the known ones, by the length of the element; there are none here.
    bool at_end() {
        ber_len_t length = 0;
        return ber_peek_tag(element(), &length) == LBER_DEFAULT;
    }

private:
    BerElement* element_ = kept_element();
};

bool write_request(const Request& request, Packet& packet) {
    Writer to;
    return to.open(wants) && to.number(request.version) && to.open(private_key) &&
           to.text(request.name, longest_name) && to.text(request.domain, longest_domain) &&
           to.text("", longest_id) && to.truth(request.has_master_key) && to.truth(request.has_hallmark) &&
           to.truth(request.testing) && to.close() && to.close() && to.finish(packet);
}

bool read_request(const Packet& packet, HeardRequest& heard) {
    Reader from(packet);
    return from.enter(wants) && from.number(heard.version) && from.enter(private_key) &&
           from.text(longest_name, heard.name) && from.text(longest_domain, heard.domain) &&
           from.text(longest_id, heard.id) && from.truth(heard.has_master_key) &&
           from.truth(heard.has_hallmark) && from.truth(heard.testing) && from.at_end();
}

bool write_offer(const Offer& offer, Packet& packet) {
    Writer to;
    return to.open(offers) && to.number(offer.version) && to.open(private_key) &&
           to.truth(offer.has_master_key) && to.truth(offer.has_hallmark) && to.close() && to.close() &&
           to.finish(packet);
}

bool read_offer(const Packet& packet, Offer& heard) {
    Reader from(packet);
    return from.enter(offers) && from.number(heard.version) && from.enter(private_key) &&
           from.truth(heard.has_master_key) && from.truth(heard.has_hallmark) && from.at_end();
}

bool write_closing(Packet& packet) {
    Writer to;
    return to.open(closing) && to.close() && to.finish(packet);
}

bool read_closing(const Packet& packet) {
    Reader from(packet);
    return from.enter(closing) && from.at_end();
}

} // namespace

const Codec lber_codec = {"liblber",  write_request, read_request, write_offer,
                          read_offer, write_closing, read_closing};

} // namespace handshake
