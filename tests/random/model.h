#pragma once
/// What a session must show by the rules: which items the tree has, what a page shows at first, which text
/// that stands for, and what the registry holds in the end. Shares no code with the program.
#include "random/world.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace random_user {

/// What the user sees as an entry's value: an edit control's text, "ticked", "unticked" or "gone" of a check
/// box, the number of the chosen option or "none" of a list.
using Sight = std::string;

struct Item {
    std::string text;
    int depth;
    const SpecFile* file;
    /// Null for a node without a page.
    const Entry* entry;
};

class Model {
public:
    explicit Model(const World& world);

    /// The tree's items from top to bottom, all of them opened.
    const std::vector<Item>& items() const { return items_; }

    /// What the page shows when it comes up: what it showed when it was left, a number in its plain form
    /// and no text longer than a value may be.
    Sight expected(const Entry& entry) const;
    Sight last_seen(const Entry& entry) const { return seen_.at(&entry); }
    /// The user has seen this.
    void see(const Entry& entry, const Sight& sight) { seen_[&entry] = sight; }

    /// Whether only showing the entry changes its value, because a check box has only two states.
    bool is_changed_by_a_look(const Entry& entry) const;
    /// Whether anything differs from what is stored.
    bool has_changes() const;
    /// The text of the fatal error when the user starts a connection test or, in this file, a scan; empty if
    /// it can run.
    std::optional<std::string> test_failure(const SpecFile& file) const;
    std::optional<std::string> scan_failure(const SpecFile& file) const;

    /// A line for each value or key that is not in the registry as it should be now.
    std::string registry_faults(bool was_applied) const;

private:
    bool changed(const Entry& entry) const;
    std::string value(const Entry& entry) const;
    std::optional<std::string> lookup_failure(const SpecFile& file, const std::string& title,
                                              bool must_be_number) const;
    std::string fault(const SpecFile& file, const Entry& entry, bool was_applied) const;

    const World& world_;
    std::vector<const SpecFile*> loaded_;
    std::vector<Item> items_;
    std::map<const Entry*, Sight> seen_;
};

} // namespace random_user
