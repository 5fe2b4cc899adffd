#pragma once
/// A message on its way to being sent.
#include "protocol/stream.h"

/// Keeps what is written until all of it is sent with one call. In two pieces the second would wait for the
/// acknowledgement of the first, since Nagle's algorithm is on, and a peer that answers and closes early
/// would refuse it.
class Composition {
public:
    Composition();
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;

    /// A stream that can only be written.
    Stream* stream() { return &stream_; }
    const char* send_over(Stream* connection) const;

private:
    Stream stream_;
    std::uint8_t octets_[1311]; // an agent's wishes with the longest name and domain
};
