#include "base/text.h"
#include "ctl/check/state_check.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"
#include "ctl/template/formats.h"
#include "ctl/template/values.h"
#include "ctl/verbs/verbs.h"

#include <algorithm>

namespace ctl {
namespace {

struct TemplateFile {
    std::string folder;
    std::string name;
    std::string octets;
};

using Files = std::vector<TemplateFile>;

Files policy_files(const TemplateSource& source) {
    return {{"", source.stem + ".admx", write_admx(source)},
            {"en-US", source.stem + ".adml", write_adml(source)}};
}

Files preference_files(const TemplateSource& source) {
    return {{"", source.stem + ".xml", write_preferences(source)}};
}

Files reg_files(const TemplateSource& source) { return {{"", source.stem + ".reg", write_reg(source)}}; }

void drop_nothing(TemplateSource&) {}

struct Format {
    const char* name;
    bool is_of_policies;
    void (*drop_what_it_lacks)(TemplateSource&);
    Files (*files)(const TemplateSource&);
};

constexpr Format formats[] = {
    {"admx", true, drop_what_policies_lack, policy_files},
    {"gpp", false, drop_what_items_lack, preference_files},
    {"reg", false, drop_nothing, reg_files},
};

const Format& format_named(const std::string& name) {
    return *std::find_if(std::begin(formats), std::end(formats),
                         [&](const Format& each) { return name == each.name; });
}

CheckedSpec read_spec(const std::string& path) {
    auto octets = read_file(path);
    if (!octets)
        throw Failure{ExitCode::invalid, path + ": " + why_unreadable()};
    std::string digest = sha256(*octets);
    return {SpecModel(std::move(*octets)), std::move(digest)};
}

/// Makes the templates of one run: everything is read and checked before the first file is written.
class Making {
public:
    explicit Making(const Arguments& arguments)
        : arguments_(arguments), format_(format_named(arguments.format)),
          code_page_(arguments.code_page.value_or(machine_code_page())) {}

    Files make() {
        read_sources();
        refuse_alike();
        if (!arguments_.state.empty()) {
            take_state(read_state_file(arguments_.state));
        } else if (!format_.is_of_policies) {
            std::for_each(sources_.begin(), sources_.end(), fill_from_machine);
        }
        drop_what_is_lacking();
        return files();
    }

private:
    void read_sources();
    void refuse_alike() const;
    void refuse_alike(const TemplateSource& one, const TemplateSource& other) const;
    void take_state(const State& state);
    void check(const State& state) const;
    void drop_what_is_lacking();
    Files files() const;

    const Arguments& arguments_;
    const Format& format_;
    unsigned code_page_;
    std::vector<CheckedSpec> specs_;
    /// One for each spec file.
    std::vector<TemplateSource> sources_;
};

void Making::read_sources() {
    for (const std::string& path : arguments_.operands) {
        specs_.push_back(read_spec(path));
        sources_.push_back(template_source_of(path, specs_.back().spec, code_page_));
    }
}

void Making::refuse_alike() const {
    for (auto one = sources_.begin(); one != sources_.end(); ++one) {
        for (auto other = sources_.begin(); other != one; ++other)
            refuse_alike(*other, *one);
    }
}

void Making::refuse_alike(const TemplateSource& one, const TemplateSource& other) const {
    const std::string both = one.path + " and " + other.path;
    const std::string prefix = policy_prefix(one);
    if (same_ignoring_case(one.stem, other.stem))
        throw Failure{ExitCode::invalid, both + " would make templates with the same name"};
    if (format_.is_of_policies && same_ignoring_case(prefix, policy_prefix(other))) {
        throw Failure{ExitCode::invalid, both + " would make templates with the same prefix \"" + prefix +
                                             "\"; rename one of them"};
    }
}

void Making::take_state(const State& state) {
    check(state);
    for (const DesiredConfiguration& each : state) {
        const std::size_t place =
            static_cast<std::size_t>(find_spec(each, specs_, code_page_) - specs_.data());
        fill_from_state(sources_[place], specs_[place].spec, each, code_page_);
    }
}

/// A template reaches many machines, so it must not contain values that `apply` refuses.
void Making::check(const State& state) const {
    Problems problems;
    for (const Finding& each : check_state(state, specs_, code_page_)) {
        if (each.severity == Severity::error) {
            problems.add(each.text);
        } else {
            say(each.text, Level::warning);
        }
    }
    problems.refuse_if_any();
}

void Making::drop_what_is_lacking() {
    for (TemplateSource& source : sources_) {
        format_.drop_what_it_lacks(source);
        for (const std::string& each : source.left_out)
            say(each, Level::warning);
    }
    for (const TemplateSource& source : sources_) {
        if (source.groups.empty()) {
            throw Failure{ExitCode::invalid,
                          source.path +
                              ": none of the entries can be mapped, so there is no template to write"};
        }
    }
}

Files Making::files() const {
    Files all;
    for (const TemplateSource& source : sources_) {
        for (TemplateFile& file : format_.files(source))
            all.push_back(std::move(file));
    }
    return all;
}

void write(const std::string& out, const TemplateFile& file) {
    const std::string folder = file.folder.empty() ? out : join_path(out, file.folder);
    const std::string path = join_path(folder, file.name);
    if (!make_folders(folder) || !write_file(path, file.octets))
        throw Failure{ExitCode::failed, path + ": the file cannot be written"};
    print(path + "\n");
}

ExitCode make_template(const Arguments& arguments) {
    for (const TemplateFile& file : Making(arguments).make())
        write(arguments.out, file);
    return ExitCode::success;
}

} // namespace

const Verb template_verb{
    .name = "template",
    .usage = "FILE... --format admx|gpp|reg --out FOLDER [--state STATE.json] [--code-page N]",
    .least_operands = 1,
    .most_operands = any_number,
    .summary = "make templates for Group Policy and .reg files from spec files",
    .help = R"(
Writes for each spec file:

    admx   NAME.admx and en-US\NAME.adml, a policy for each entry
    gpp    NAME.xml, registry items for Group Policy Preferences
    reg    NAME.reg

The values are those of --state, which is checked as apply checks it, or else those of this machine. In gpp
and reg, an item without a value does nothing until someone sets its value. Prints the paths of the files, and
lists the entries that cannot be mapped, with the reason.
)",
    .run = make_template,
};

} // namespace ctl
