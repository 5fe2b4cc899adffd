#pragma once
/// The spec file and the registry that the programs work on.
#include "peers/servers.h"

#include <string>

namespace bench {

/// A spec file with this name, listed in the registry, and keys for its values; removes all of them at the
/// end.
class Seed {
public:
    /// Text entries, each with a value.
    explicit Seed(int entries);
    /// The settings of a connection test of these servers.
    static Seed of_connection_test(const Servers& servers);
    ~Seed();
    Seed(const Seed&) = delete;
    Seed& operator=(const Seed&) = delete;

    /// Gives every entry the value that it had at first.
    void reset_values() const;
    /// Whether every entry's value is the changed one.
    bool is_changed() const;

private:
    explicit Seed(const std::string& spec_text);

    int entries_ = 0;
    std::string path_;
};

/// The texts with an entry's number in them.
std::string numbered(const char* format, int number);

} // namespace bench
