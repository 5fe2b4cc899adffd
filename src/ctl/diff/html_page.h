#pragma once
/// What is the same on every page of a comparison. The page's policy lets it load nothing and run no script
/// but its own, which is named by its SHA-256: a changed script needs a new one, which the tests print.

namespace ctl {

/// As far as the counts, between them and the machines, and behind the last machine.
extern const char* const html_head;
extern const char* const html_table;
extern const char* const html_end;

} // namespace ctl
