/// Whatever the codec writes, it reads back: the input is a row of elements, each a kind (1 octet) and its
/// value. They are written one after the other, then read, in whatever pieces they arrive; a copy that is one
/// octet short is not read.
#include "fuzz/input.h"
#include "net/memory.h"
#include "protocol/heads.h"
#include "protocol/messages.h"
#include "protocol/values.h"
#include "support/memory_stream.h"

#include <functional>
#include <memory>
#include <vector>

namespace {

using Text = std::unique_ptr<char, net::FreeMemory>;
/// Reads an element and compares it with what was written. False when the stream ended too early.
using Reader = std::function<bool(Stream*)>;

const std::string too_early = "Peer closed connection unexpectedly";

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Whether something was read; anything but the early end of the stream is a finding.
bool was_read(const char* problem) {
    require(problem == nullptr || ends_with(problem, too_early));
    return problem == nullptr;
}

Reader put_tag(Input& input, Stream* stream) {
    // One identifier cannot be written: read alone, its octet is the filler.
    const std::uint32_t tag = input.number(4);
    if (tag == 200)
        return [](Stream*) { return true; };
    require(write_tag(stream, tag) == nullptr);
    return [tag](Stream* in) {
        std::uint32_t found = ~tag;
        return was_read(read_tag(in, &found)) && (require(found == tag), true);
    };
}

bool reads_length(Stream* in, std::uint32_t length, bool indefinite) {
    std::uint32_t found = ~length;
    bool found_indefinite = !indefinite;
    if (!was_read(read_length(in, &found, &found_indefinite)))
        return false;
    require(found == length && found_indefinite == indefinite);
    return true;
}

Reader put_length(Input& input, Stream* stream) {
    const std::uint32_t length = input.number(4);
    require(write_length(stream, length) == nullptr);
    return [length](Stream* in) { return reads_length(in, length, false); };
}

Reader put_indefinite(Input&, Stream* stream) {
    require(write_indefinite(stream) == nullptr);
    return [](Stream* in) { return reads_length(in, 0, true); };
}

Reader put_integer(Input& input, Stream* stream) {
    const auto value = static_cast<std::int32_t>(input.number(4));
    const auto min = static_cast<std::int32_t>(input.number(4));
    const auto max = static_cast<std::int32_t>(input.number(4));
    const bool fits = min <= value && value <= max;
    require((write_signed_int(stream, min, max, value) == nullptr) == fits);
    if (!fits)
        return [](Stream*) { return true; };
    return [=](Stream* in) {
        std::int32_t found = ~value;
        return was_read(read_signed_int(in, min, max, &found, 0)) && (require(found == value), true);
    };
}

Reader put_boolean(Input& input, Stream* stream) {
    const bool value = input.flag();
    require(write_bool(stream, value) == nullptr);
    return [value](Stream* in) {
        bool found = !value;
        return was_read(read_bool(in, &found, 0)) && (require(found == value), true);
    };
}

bool reads_string(Stream* in, const std::string& value) {
    char* text = nullptr;
    const bool read = was_read(read_string(in, static_cast<std::uint32_t>(value.size()), &text, 0));
    const Text found(text);
    require(read == (found != nullptr));
    require(!read || value == found.get());
    return read;
}

Reader put_string(Input& input, Stream* stream) {
    const std::string value = input.long_text().c_str();
    require(write_string(stream, static_cast<std::uint32_t>(value.size()), value.c_str()) == nullptr);
    return [value](Stream* in) { return reads_string(in, value); };
}

Octets element_of(Input& input, int depth) {
    MemoryStream out;
    if (depth == 0 || input.flag()) {
        const std::string content = input.text(input.octet());
        require(write_tag(&out, 32) == nullptr);
        require(write_length(&out, static_cast<std::uint32_t>(content.size())) == nullptr);
        return out.received + octets_of(content);
    }
    require(write_tag(&out, tag_client_wants) == nullptr && write_indefinite(&out) == nullptr);
    for (int count = input.octet() % 4; count > 0; --count)
        out.received = out.received + element_of(input, depth - 1);
    require(write_end_of_contents(&out) == nullptr);
    return out.received;
}

/// An element of elements, which is read by being skipped.
Reader put_tree(Input& input, Stream* stream) {
    const Octets octets = element_of(input, 6);
    require(stream->socket_write_buf(stream, octets.data(), octets.size()) == nullptr);
    return [](Stream* in) { return was_read(skip_value(in, 0)); };
}

bool reads_head(Stream* in, std::uint32_t tag) {
    std::uint32_t found = ~tag;
    return was_read(read_tag(in, &found)) && (require(found == tag), reads_length(in, 0, true));
}

bool reads_true(Stream* in) {
    bool found = false;
    return was_read(read_bool(in, &found, 0)) && (require(found), true);
}

bool reads_end(Stream* in) { return was_read(skip_to_eol(in)); }

/// What the client sends first, as a server reads it.
Reader put_request(Input& input, Stream* stream) {
    const std::string name = std::string(input.long_text().c_str()).substr(0, 256);
    const std::string domain = std::string(input.long_text().c_str()).substr(0, 1024);
    const auto version = static_cast<std::int32_t>(input.number(2));
    require(write_client_wants(stream, version, name.c_str(), domain.c_str()) == nullptr);
    return [=](Stream* in) {
        std::int32_t found = ~version;
        return reads_head(in, tag_client_wants) && was_read(read_signed_int(in, 0, 65535, &found, 0)) &&
               (require(found == version), reads_head(in, tag_client_private_key)) &&
               reads_string(in, name) && reads_string(in, domain) && reads_string(in, "") && reads_true(in) &&
               reads_true(in) && reads_true(in) && reads_end(in) && reads_end(in);
    };
}

/// What a server answers, as the client reads it.
Reader put_offer(Input& input, Stream* stream) {
    const auto version = static_cast<std::int32_t>(input.number(2));
    require(write_tag(stream, tag_server_offers) == nullptr && write_indefinite(stream) == nullptr);
    require(write_signed_int(stream, 0, 65535, version) == nullptr);
    require(write_tag(stream, tag_server_private_key) == nullptr && write_indefinite(stream) == nullptr);
    require(write_bool(stream, input.flag()) == nullptr && write_bool(stream, input.flag()) == nullptr);
    put_tree(input, stream); // a field of a later server
    require(write_end_of_contents(stream) == nullptr && write_end_of_contents(stream) == nullptr);
    return [version](Stream* in) {
        std::int32_t found = ~version;
        return was_read(read_server_offers_incomplete(in, &found, 0)) &&
               (require(found == version), was_read(read_server_private_key(in, 0))) && reads_end(in);
    };
}

Reader put_refusal(Input& input, Stream* stream) {
    const std::string reason = std::string(input.long_text().c_str()).substr(0, 1024);
    require(write_tag(stream, tag_negotiate_nack) == nullptr && write_indefinite(stream) == nullptr);
    require(write_string(stream, 1024, reason.c_str()) == nullptr);
    require(write_end_of_contents(stream) == nullptr);
    return [reason](Stream* in) {
        char* text = nullptr;
        const bool read = was_read(read_negotiate_nack(in, &text, 0));
        const Text found(text);
        require(!read || reason == found.get());
        return read;
    };
}

/// Reads all; false when the stream ended too early.
bool read_all(const std::vector<Reader>& readers, const Octets& octets, std::size_t piece) {
    MemoryStream in(octets);
    in.arrives_in_pieces_of(piece);
    for (const Reader& reader : readers) {
        if (!reader(&in))
            return false;
    }
    require(in.unread() == 0);
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static Reader (*const writers[])(Input&, Stream*) = {put_tag,     put_length, put_indefinite, put_integer,
                                                         put_boolean, put_string, put_tree,       put_request,
                                                         put_offer,   put_refusal};
    Input input(data, size);
    MemoryStream out;
    std::vector<Reader> readers;
    while (!input.done())
        readers.push_back(writers[input.octet() % std::size(writers)](input, &out));
    for (const std::size_t piece : {0u, 1u, 3u, 4096u}) {
        require(read_all(readers, out.received, piece));
        if (!out.received.empty())
            require(!read_all(readers, first_octets(out.received, out.received.size() - 1), piece));
    }
    return 0;
}
