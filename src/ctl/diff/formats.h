#pragma once
/// The forms in which a comparison is printed, each in a file of its own. All print piece by piece: the page
/// for thousands of machines is never in memory as one text.
#include "ctl/diff/comparison.h"

#include <string>
#include <vector>

namespace ctl {

/// The machines, with what is counted over all of them.
struct Fleet {
    explicit Fleet(std::vector<MachineDifferences> all);

    std::vector<MachineDifferences> machines;
    std::size_t in_sync = 0;
    std::size_t drifting = 0;
    /// Could not be compared; the machines of these three are all.
    std::size_t with_problems = 0;
    std::size_t restart_pending = 0;
    std::size_t other_spec_file = 0;
};

/// A table of at most 80 columns, in which long texts are cut.
void print_text(const Fleet& fleet);
/// A row for each difference, and one for a machine without any.
void print_csv(const Fleet& fleet);
void print_json(const Fleet& fleet);
/// One page that needs nothing beside it.
void print_html(const Fleet& fleet);

/// "in sync", "drift" or "problem".
const char* state_word(const MachineDifferences& machine);
/// What else is worth knowing, such as "restart pending" or "TavrinAgent: stopped".
std::vector<std::string> notes_on(const MachineDifferences& machine);

} // namespace ctl
