#pragma once
/// The result of a reader of the codec as one text: the value or the reason why there is none, and the number
/// of octets that are left unread.
#include "support/memory_stream.h"

#include <gtest/gtest.h>

#include <string>

/// "514" or "514, 2 left" after a success, "data out of range, 1 left" after a failure.
inline std::string outcome(const char* problem, const std::string& value, const MemoryStream& stream) {
    const std::uint64_t left = stream.unread();
    return (problem != nullptr ? problem : value) + (left > 0 ? ", " + std::to_string(left) + " left" : "");
}

/// Gives `read`, which returns such a text, every beginning of an element that is whole.
template <typename Read> void expect_no_beginning_is_enough(const Octets& whole, Read read) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(read(first_octets(whole, size)), "Peer closed connection unexpectedly")
            << size << " octets";
    }
}

/// A bad element, and the text that a reader returns for it.
struct BadElement {
    const char* what;
    Octets octets;
    std::string outcome;
};
