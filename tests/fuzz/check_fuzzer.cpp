/// What `tavrinctl check` finds in a file: an error at least wherever the window refuses it, every finding at
/// a line of the file and in order; and a template of what has no error can be made, or is refused in words.
#include "ctl/check/spec_check.h"
#include "ctl/failure.h"
#include "ctl/template/formats.h"
#include "fuzz/input.h"
#include "specfile/spec_model.h"

#include <algorithm>

namespace {

std::size_t lines_of(const std::string& octets) {
    return 1 + static_cast<std::size_t>(std::count(octets.begin(), octets.end(), '\n'));
}

bool window_refuses(const std::string& octets) {
    const SpecModel model{octets};
    return !model.errors.empty() || !model.unknown_types.empty();
}

bool has_error(const std::vector<ctl::Finding>& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const ctl::Finding& each) { return each.severity == ctl::Severity::error; });
}

void require_order(const std::vector<ctl::Finding>& findings, std::size_t lines) {
    std::size_t last = 1;
    for (const ctl::Finding& each : findings) {
        require(each.line >= last && each.line <= std::max<std::size_t>(lines, 2));
        require(!each.text.empty());
        last = each.line;
    }
}

/// Tags as they are opened and closed; our own writer puts no ">" into a text.
bool is_balanced(const std::string& xml) {
    long depth = 0;
    for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
        const std::size_t end = xml.find('>', at);
        if (end == std::string::npos)
            return false;
        if (xml[at + 1] == '/')
            --depth;
        else if (xml[at + 1] != '?' && xml[end - 1] != '/')
            ++depth;
    }
    return depth == 0;
}

void require_templates(const std::string& octets) {
    try {
        ctl::TemplateSource source = ctl::template_source_of("x.spec", SpecModel(octets), 1252);
        require(ctl::write_reg(source).size() % 2 == 0);
        ctl::TemplateSource items = source;
        ctl::drop_what_items_lack(items);
        require(is_balanced(ctl::write_preferences(items)));
        ctl::drop_what_policies_lack(source);
        require(is_balanced(ctl::write_admx(source)));
        require(is_balanced(ctl::write_adml(source)));
    } catch (const ctl::Failure& failure) {
        require(failure.code == ctl::ExitCode::invalid && !failure.text.empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string octets(reinterpret_cast<const char*>(data), size);
    for (const bool is_utf8 : {false, true}) {
        const std::vector<ctl::Finding> findings = ctl::check_spec(octets, is_utf8 ? 65001 : 1252);
        require(has_error(findings) || !window_refuses(octets));
        require_order(findings, lines_of(octets));
    }
    require_templates(octets);
    return 0;
}
