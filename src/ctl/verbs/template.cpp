#include "base/text.h"
#include "ctl/change/state_file.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/files.h"
#include "ctl/io/system.h"
#include "ctl/machine/present_values.h"
#include "ctl/template/formats.h"
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

Files policy_files(TemplateSource& source) {
    drop_what_policies_lack(source);
    return {{"", source.stem + ".admx", write_admx(source)},
            {"en-US", source.stem + ".adml", write_adml(source)}};
}

Files preference_files(TemplateSource& source) {
    return {{"", source.stem + ".xml", write_preferences(source)}};
}

Files reg_files(TemplateSource& source) { return {{"", source.stem + ".reg", write_reg(source)}}; }

struct Format {
    const char* name;
    bool needs_values;
    Files (*files)(TemplateSource&);
};

constexpr Format formats[] = {
    {"admx", false, policy_files},
    {"gpp", true, preference_files},
    {"reg", true, reg_files},
};

const Format& format_named(const std::string& name) {
    return *std::find_if(std::begin(formats), std::end(formats),
                         [&](const Format& each) { return name == each.name; });
}

const WishedConfiguration* find_in(const State& state, const TemplateSource& source) {
    const auto found = std::find_if(state.begin(), state.end(), [&](const WishedConfiguration& each) {
        return same_ignoring_case(each.name, source.configuration) ||
               (!each.key.empty() && same_ignoring_case(each.key, source.key));
    });
    return found == state.end() ? nullptr : &*found;
}

std::optional<std::string> wished_in(const WishedConfiguration& configuration, const TemplateEntry& entry) {
    const auto found =
        std::find_if(configuration.values.begin(), configuration.values.end(), [&](const WishedValue& each) {
            return same_ignoring_case(each.name, entry.value_name);
        });
    return found == configuration.values.end() ? std::nullopt : found->text;
}

/// Where the values come from: a state file, or this machine.
class Values {
public:
    explicit Values(const std::string& state_path) : from_machine_(state_path.empty()) {
        if (!from_machine_)
            state_ = read_state_file(state_path);
    }

    void fill(TemplateSource& source) const {
        const WishedConfiguration* const wished = find_in(state_, source);
        for (TemplateGroup& group : source.groups) {
            for (TemplateEntry& entry : group.entries) {
                entry.value = from_machine_       ? present_value(source.key, entry.value_name)
                              : wished != nullptr ? wished_in(*wished, entry)
                                                  : std::nullopt;
            }
        }
    }

private:
    bool from_machine_;
    State state_;
};

void refuse_same_stems(const std::vector<TemplateSource>& sources) {
    for (auto one = sources.begin(); one != sources.end(); ++one) {
        for (auto other = sources.begin(); other != one; ++other) {
            if (same_ignoring_case(one->stem, other->stem)) {
                throw Failure{invalid,
                              other->path + " and " + one->path + " would make templates with the same name"};
            }
        }
    }
}

void write(const std::string& out, const TemplateFile& file) {
    const std::string folder = file.folder.empty() ? out : join_path(out, file.folder);
    const std::string path = join_path(folder, file.name);
    if (!make_folders(folder) || !write_file(path, file.octets))
        throw Failure{failed, path + ": the file cannot be written"};
    print(path + "\n");
}

std::vector<TemplateSource> read_sources(const Arguments& arguments) {
    const unsigned code_page = arguments.code_page.value_or(machine_code_page());
    std::vector<TemplateSource> sources;
    for (const std::string& path : arguments.operands)
        sources.push_back(read_template_source(path, code_page));
    refuse_same_stems(sources);
    return sources;
}

void tell_left_out(const std::vector<TemplateSource>& sources) {
    for (const TemplateSource& source : sources) {
        for (const std::string& each : source.left_out)
            say(each, Level::warning);
    }
}

/// All are made before the first is written.
Files make_files(std::vector<TemplateSource>& sources, const Format& format, const Values& values) {
    Files files;
    for (TemplateSource& source : sources) {
        if (format.needs_values)
            values.fill(source);
        for (TemplateFile& file : format.files(source))
            files.push_back(std::move(file));
    }
    return files;
}

int make_template(const Arguments& arguments) {
    const Format& format = format_named(arguments.format);
    std::vector<TemplateSource> sources = read_sources(arguments);
    const Files files = make_files(sources, format, Values(arguments.state));
    for (const TemplateFile& file : files)
        write(arguments.out, file);
    tell_left_out(sources);
    return as_wished;
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

In gpp and reg, an item without a value does nothing until someone sets its value. Prints the paths of the
files, and lists the entries that cannot be mapped, with the reason.
)",
    .run = make_template,
};

} // namespace ctl
