/// What a scan makes of datagrams: the input is a row of them, each as its sender's address (4 octets), its
/// length (2 octets, most significant first) and its octets. The result must be what a plain reading of the
/// rules gives.
#include "fuzz/input.h"
#include "net/address_text.h"
#include "net/discovery.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Datagram {
    unsigned char sender[4] = {};
    std::vector<unsigned char> octets;
};

/// The next datagram; the last one is as long as the input reaches.
Datagram take(const unsigned char*& next, std::size_t& left) {
    Datagram datagram;
    std::memcpy(datagram.sender, next, 4);
    const std::size_t length = std::min<std::size_t>(left - 6, next[4] * 256U + next[5]);
    // A copy of exactly this length: reading past it is found.
    datagram.octets.assign(next + 6, next + 6 + length);
    next += 6 + length;
    left -= 6 + length;
    return datagram;
}

bool is_answer(const std::vector<unsigned char>& octets) {
    static const unsigned char magic[] = {0x12, 0x34, 0x56, 0x78};
    static const unsigned char rest[] = {0, 0, 0, 5, 0, 0, 0, 2};
    return octets.size() >= 16 && std::equal(magic, magic + 4, octets.begin()) &&
           std::equal(rest, rest + 8, octets.begin() + 8);
}

std::string dotted(const unsigned char (&sender)[4]) {
    return std::to_string(sender[0]) + '.' + std::to_string(sender[1]) + '.' + std::to_string(sender[2]) +
           '.' + std::to_string(sender[3]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    net::AddressBlock block;
    require(block.open());
    std::vector<std::string> expected;
    while (size >= 6) {
        const Datagram datagram = take(data, size);
        const bool accepted = net::is_discovery_answer(datagram.octets.data(), datagram.octets.size());
        require(accepted == is_answer(datagram.octets));
        if (!accepted)
            continue;
        std::uint32_t address = 0;
        std::memcpy(&address, datagram.sender, sizeof address);
        require(block.add(address));
        const std::string text = dotted(datagram.sender);
        if (std::find(expected.begin(), expected.end(), text) == expected.end())
            expected.push_back(text);
    }
    std::string whole;
    for (const std::string& each : expected)
        whole += each + '\0';
    whole += '\0';
    const std::unique_ptr<char, net::FreeMemory> found(block.finish());
    require(std::memcmp(found.get(), whole.data(), whole.size()) == 0);
    return 0;
}
