#pragma once
/// A stream whose peer is a script in memory: it sends what the test has prepared, and keeps what it
/// receives. Its texts are those of the TCP stream.
#include "protocol/stream.h"
#include "support/octets.h"

#include <limits>

class MemoryStream : public Stream {
public:
    explicit MemoryStream(const Octets& sent = {});

    /// Lets the peer send `times` copies of `unit` next. Only one copy is held.
    void sends(const Octets& unit, std::uint64_t times = 1);
    /// Lets the peer's octets arrive in pieces of up to `size` octets: a read takes the whole next piece, and
    /// keeps the octets that were not asked for in the stream's buffer. Without this call, a read takes only
    /// what was asked for.
    void arrives_in_pieces_of(std::size_t size);
    /// The number of octets of the peer that were not read.
    std::uint64_t unread() const;

    /// Lets the connection break once `count` octets are received: every further write fails with `text`.
    void break_after(std::size_t count, const char* text);

    Octets received;
    int writes = 0;
    int flushes = 0;
    int closes = 0;

private:
    struct Part {
        Octets unit;
        std::uint64_t times;
    };

    static const char* read_octets(Stream* stream, void* buffer, std::size_t count);
    static const char* write_octets(Stream* stream, const void* bytes, std::size_t count);
    static const char* flush_octets(Stream* stream);
    static bool can_read(Stream* stream, int seconds);
    static void close_stream(Stream* stream);
    bool next_octet(std::uint8_t* octet);
    bool next_piece();
    const char* read_pieces(std::uint8_t* octets, std::size_t count);

    std::vector<Part> script_;
    std::size_t piece_size_ = 0; // 0: nothing stays at hand
    Octets piece_;               // holds what is at hand
    std::size_t part_ = 0;       // index into `script_`
    std::uint64_t copy_ = 0;     // copies of the part's unit that are used up
    std::size_t offset_ = 0;     // into the copy being read
    std::size_t room_ = std::numeric_limits<std::size_t>::max();
    const char* break_text_ = nullptr;
};
