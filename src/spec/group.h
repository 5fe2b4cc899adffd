#pragma once
/// A named list of entries, in the order of the spec file.
#include "spec/base_entry.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Destroys an entry as the kind that it was made as.
struct EntryDeleter {
    void operator()(BaseEntry* entry) const { destroy(entry); }

    void (*destroy)(BaseEntry*) = nullptr;
};

using OwnedEntry = std::unique_ptr<BaseEntry, EntryDeleter>;

/// Makes an entry of the kind `Entry`.
template <typename Entry, typename... Arguments> OwnedEntry make_entry(Arguments&&... arguments) {
    return {new Entry(std::forward<Arguments>(arguments)...),
            {[](BaseEntry* entry) { delete static_cast<Entry*>(entry); }}};
}

struct Group {
    /// Empty for the implicit group of entries that stand before any group start; it gets no tree node.
    std::string name;
    std::vector<OwnedEntry> entries;
};
