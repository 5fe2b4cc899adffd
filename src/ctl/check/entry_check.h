#pragma once
#include "ctl/check/findings.h"
#include "ctl/io/registry_names.h"
#include "specfile/spec_text.h"

#include <vector>

namespace ctl {

/// Checks the entries of a spec file, one by one and against each other. A lookup by title that fails ends
/// the window: the connection test looks up four titles, and "Scan" the title "Port".
class EntryCheck {
public:
    EntryCheck(std::string_view text, unsigned code_page, Findings& findings);

    void take(const Declaration& declaration);
    /// Reports what is known only at the end of the file.
    void finish();

private:
    std::size_t note_title(const Declaration& declaration);
    void check_title(const Declaration& declaration);
    void check_value_name(const Declaration& declaration);
    void check_help(const Declaration& declaration);
    void check_options(const Declaration& declaration);
    void check_underline(const SpecLine& line, const char* what);
    void check_port_of_scan();
    void check_wanted_title(const SpecLine& title);

    Findings& findings_;
    /// Whether there is an "&" anywhere; most files have none.
    bool has_ampersand_;
    std::size_t entries_ = 0;
    NameTable titles_;
    /// The titles whose first entry has no registry value.
    NameTable titles_without_value_{false};
    RegistryNames value_names_;
    /// The titles that the connection test looks up, and the lines of that test and of the first server list.
    std::vector<SpecLine> wanted_titles_;
    std::size_t connection_test_ = 0;
    std::size_t server_list_ = 0;
};

} // namespace ctl
