/// Any answer of a server: the input is everything that it sends. Whatever it is, the agent ends with a text
/// or accepted, has sent exactly what belongs to that end, and what it read decides alone: with nothing
/// behind it the end is the same, with one octet less the connection was closed too early. Nor does it matter
/// in what pieces the answer arrives.
#include "protocol/negotiation.h"

#include "fuzz/input.h"
#include "support/conversation.h"
#include "support/memory_stream.h"

#include <cstring>
#include <string>

namespace {

using conversation::closing;
using conversation::request;

const std::string too_early = "Peer closed connection unexpectedly";

struct End {
    bool accepted;
    std::string text;
    std::size_t read;

    bool operator==(const End&) const = default;
};

bool starts_with(const std::string& text, const char* beginning) { return text.rfind(beginning, 0) == 0; }

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// `piece`: in pieces of how many octets they arrive; 0: as they are asked for.
End answer(const Octets& octets, std::size_t piece = 0) {
    MemoryStream stream(octets);
    stream.arrives_in_pieces_of(piece);
    int status = 77;
    const char* text = negotiate(&stream, "web1", "", &status);
    require(status == (text == nullptr ? 0 : starts_with(text, "Tavrin Server rejected us: ") ? 1 : 2));
    require(stream.received == (text == nullptr ? request + closing : request));
    require(text == nullptr || (*text != '\0' && std::strlen(text) < 256));
    return {text == nullptr, text == nullptr ? "" : text, octets.size() - stream.unread()};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const Octets octets(data, data + size);
    const End end = answer(octets);
    for (const std::size_t piece : {1u, 3u, 4096u})
        require(answer(octets, piece) == end);
    if (ends_with(end.text, too_early) && !starts_with(end.text, "Tavrin Server rejected us: "))
        return 0;
    require(answer(first_octets(octets, end.read)) == end);
    require(end.read > 0 && ends_with(answer(first_octets(octets, end.read - 1)).text, too_early));
    return 0;
}
