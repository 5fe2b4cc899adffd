#pragma once
/// One negotiation in memory, in the elements that agent and server exchange. Every codec of the comparison
/// writes and reads the same values with the same checks: identifiers, lengths, ranges, the texts' maxima.
/// Texts that were read are owned copies, ended by a zero byte.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace handshake {

inline constexpr long highest_version = 65535;
inline constexpr std::size_t longest_name = 256;
inline constexpr std::size_t longest_domain = 1024;
inline constexpr std::size_t longest_id = 128;

struct Free {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Free>;

/// The values that the agent sends.
struct Request {
    long version;
    const char* name;
    const char* domain;
    bool has_master_key;
    bool has_hallmark;
    bool testing;
};
/// The values that the server received.
struct HeardRequest {
    long version;
    Text name;
    Text domain;
    Text id;
    bool has_master_key;
    bool has_hallmark;
    bool testing;
};
/// The values that the server sends and the agent receives.
struct Offer {
    long version;
    bool has_master_key;
    bool has_hallmark;
};

/// The octets of one message.
struct Packet {
    std::uint8_t octets[2048];
    std::size_t size = 0;
};

/// All return false if a value is out of range, cut off or otherwise wrong.
struct Codec {
    const char* name;
    bool (*write_request)(const Request& request, Packet& packet);
    bool (*read_request)(const Packet& packet, HeardRequest& heard);
    bool (*write_offer)(const Offer& offer, Packet& packet);
    bool (*read_offer)(const Packet& packet, Offer& heard);
    bool (*write_closing)(Packet& packet);
    bool (*read_closing)(const Packet& packet);
};

extern const Codec our_codec;
extern const Codec lber_codec;
extern const Codec snmp_codec;
extern const Codec tasn1_codec;

} // namespace handshake
