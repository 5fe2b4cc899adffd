#pragma once
/// Entries that the window looks up by their titles: the connection test names four, and "Scan" wants the one
/// titled "Port". A lookup that fails ends the window's program.
#include "ctl/check/findings.h"
#include "specfile/name_table.h"
#include "specfile/spec_text.h"

#include <cstddef>
#include <vector>

namespace ctl {

class TitleLookups {
public:
    /// `expected` is about how many entries the file has.
    explicit TitleLookups(std::size_t expected) : titles_(false, expected) {}

    /// Notes an entry of a known kind. Returns the line of an earlier entry with its title; 0 without one.
    std::size_t add(const Declaration& declaration);
    /// Reports every lookup that will fail.
    void check(Findings& findings) const;

private:
    void check_port_of_scan(Findings& findings) const;
    void check_wanted_title(const SpecLine& title, Findings& findings) const;

    NameTable titles_;
    /// Of those, the ones whose first entry has no registry value.
    NameTable titles_without_value_{false};
    /// What the connection test looks up, and the lines where it and the first server list stand.
    std::vector<SpecLine> wanted_titles_;
    std::size_t connection_test_ = 0;
    std::size_t server_list_ = 0;
};

} // namespace ctl
