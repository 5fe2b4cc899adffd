#pragma once
/// The forms in which a comparison is printed. All print piece by piece, so that the page for thousands of
/// machines is never in memory as one text.
#include "ctl/diff/comparison.h"

#include <string>
#include <vector>

namespace ctl {

/// The machines, and their numbers.
struct Fleet {
    explicit Fleet(std::vector<MachineDifferences> all);

    std::vector<MachineDifferences> machines;
    std::size_t in_sync = 0;
    std::size_t drifting = 0;
    /// Machines that could not be compared; every machine is counted in one of these three.
    std::size_t with_problems = 0;
    std::size_t restart_pending = 0;
    std::size_t other_spec_file = 0;
};

/// A table of at most 80 columns; long texts are cut.
void print_text(const Fleet& fleet);
/// A row for each difference, and one for a machine without any.
void print_csv(const Fleet& fleet);
void print_json(const Fleet& fleet);
/// One page that needs no other file.
void print_html(const Fleet& fleet);

/// "in sync", "drift" or "problem".
const char* state_word(const MachineDifferences& machine);
/// Other things to know, such as "restart pending" or "TavrinAgent: stopped".
std::vector<std::string> notes_on(const MachineDifferences& machine);

} // namespace ctl
