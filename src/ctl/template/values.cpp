#include "ctl/template/values.h"

#include "ctl/check/state_check.h"
#include "ctl/io/encoding.h"
#include "specfile/value_text.h"

namespace ctl {
namespace {

template <typename Each> void for_all(TemplateSource& source, Each each) {
    for (TemplateGroup& group : source.groups) {
        for (TemplateEntry& entry : group.entries)
            each(entry);
    }
}

/// A value of another type stays as the state has it.
DesiredValue as_stored(DesiredValue desired, const Declaration& declaration, unsigned code_page) {
    if (desired.text && desired.type.empty()) {
        desired.text =
            to_utf8(stored_by_page(declaration, desired_text(desired, declaration, code_page)), code_page);
    }
    return desired;
}

} // namespace

void fill_from_state(TemplateSource& source, const SpecModel& spec, const DesiredConfiguration& desired,
                     unsigned code_page) {
    DesiredEntries entries(spec, code_page);
    std::vector<std::optional<DesiredValue>> values(spec.entries.size());
    for (const DesiredValue& each : desired.values) {
        const std::size_t place = entries.place_of(each);
        values[place] = as_stored(each, spec.entries[place].declaration, code_page);
    }
    for_all(source, [&](TemplateEntry& entry) { entry.value = values[entry.place]; });
}

void fill_from_machine(TemplateSource& source) {
    for_all(source, [&](TemplateEntry& entry) { entry.value = present_value(source.key, entry.value_name); });
}

} // namespace ctl
