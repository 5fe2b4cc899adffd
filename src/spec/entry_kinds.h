#pragma once
/// Which type lines there are, and what is made of a subspec of each.
#include "spec/group.h"
#include "spec/line_reader.h"

#include <string>
#include <string_view>
#include <vector>

class Configuration;

/// The lines of one subspec, the unit of a spec file from which one entry is made.
struct Subspec {
    std::string_view title;
    /// For some types the name of something else: an event, a subkey.
    std::string_view value_name;
    std::string_view help_text;
    std::string_view type;
    /// The lines that some types add below the type line.
    std::vector<std::string> more;
};

struct EntryKind {
    std::string_view type;
    /// Reads what this type has below the type line; null when nothing.
    std::vector<std::string> (*read_more)(LineReader&);
    /// Makes the entry; null when the subspec only tells the configuration something.
    OwnedEntry (*build)(const Subspec&, Configuration&);
    /// Also built when the configuration serves the connection test only.
    bool for_connection_test;
};

/// The kind of this type line, which must match exactly; null when there is none.
const EntryKind* find_entry_kind(std::string_view type);

/// True where a subspec can go no further: at the next subspec, at a group start or at the end of the text.
bool at_subspec_end(const LineReader& lines);
