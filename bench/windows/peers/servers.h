#pragma once
/// The servers of a connection test, which bench/answering provides.
#include <string>

struct Servers {
    /// The beginning of every address, such as "127."; a number from 1 to `count` follows. In this form the
    /// list of a hundred is short enough for one value.
    std::string prefix;
    int count = 0;
    unsigned short port = 0;

    std::string address(int number) const { return prefix + std::to_string(number); }
};

/// From the arguments PREFIX COUNT PORT, the first of which is number `first`; none where they are missing.
Servers servers_of(int count, char** arguments, int first);
