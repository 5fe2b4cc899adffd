#include "net/discovery_packet.h"

#include "error/text.h"

#include <cstdint>

namespace net {
namespace {

constexpr std::uint32_t magic = 0x12345678;
/// Both are sent, and the second is required in every answer; they carry no further meaning.
constexpr std::uint32_t first_constant = 5153;
constexpr std::uint32_t second_constant = 5;
constexpr std::uint32_t kind_request = 1;
constexpr std::uint32_t kind_answer = 2;

void put_word(unsigned char* octets, std::uint32_t word) {
    for (int shift = 24; shift >= 0; shift -= 8)
        *octets++ = static_cast<unsigned char>(word >> shift);
}

std::uint32_t word_at(const unsigned char* octets) {
    std::uint32_t word = 0;
    for (int i = 0; i < 4; ++i)
        word = (word << 8) | octets[i];
    return word;
}

} // namespace

std::array<unsigned char, 20> discovery_request() {
    std::array<unsigned char, 20> request{};
    put_word(&request[0], magic);
    put_word(&request[4], first_constant);
    put_word(&request[8], second_constant);
    put_word(&request[12], kind_request);
    put_word(&request[16], crc32(request.data(), 16));
    return request;
}

bool is_discovery_answer(const unsigned char* octets, std::size_t length) {
    return length >= shortest_answer && word_at(octets) == magic && word_at(octets + 8) == second_constant &&
           word_at(octets + 12) == kind_answer;
}

} // namespace net
