#include "ctl/check/title_lookups.h"

namespace ctl {

std::size_t TitleLookups::add(const Declaration& declaration) {
    const SpecLine& title = declaration.title;
    // A connection test is never looked up.
    if (declaration.kind->least_further != 0) {
        wanted_titles_ = declaration.further;
        connection_test_ = title.number;
        return 0;
    }
    if (declaration.kind->form == ValueForm::server_list && server_list_ == 0)
        server_list_ = title.number;
    const std::size_t first = titles_.add(title.text, title.number);
    if (first == 0 && !declaration.has_value())
        titles_without_value_.add(title.text, title.number);
    return first;
}

void TitleLookups::check(Findings& findings) const {
    for (const SpecLine& title : wanted_titles_)
        check_wanted_title(title, findings);
    if (server_list_ != 0)
        check_port_of_scan(findings);
}

void TitleLookups::check_port_of_scan(Findings& findings) const {
    if (titles_.find("Port") == 0) {
        findings.error(server_list_,
                       "\"Scan\" looks for the port in an entry titled \"Port\", and there is none");
    } else if (const std::size_t line = titles_without_value_.find("Port")) {
        findings.error(line, "\"Scan\" looks for the port in this entry, but it has no value");
    }
}

void TitleLookups::check_wanted_title(const SpecLine& title, Findings& findings) const {
    if (title.number == 0) {
        findings.error(connection_test_, "the file ends before the four titles of the connection test");
    } else if (titles_.find(title.text) == 0) {
        findings.error(title.number, "the connection test looks for an entry titled " + quoted(title.text) +
                                         ", and there is none");
    } else if (titles_without_value_.find(title.text) != 0) {
        findings.error(title.number, "the connection test uses the entry titled " + quoted(title.text) +
                                         ", but it has no value");
    }
}

} // namespace ctl
