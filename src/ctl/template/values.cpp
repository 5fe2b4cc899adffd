#include "ctl/template/values.h"

#include "ctl/change/state_check.h"
#include "ctl/io/encoding.h"
#include "ctl/template/present_values.h"
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
WishedValue as_stored(WishedValue wished, const Declaration& declaration, unsigned code_page) {
    if (wished.text && wished.type.empty())
        wished.text =
            to_utf8(stored_by_page(declaration, desired_text(wished, declaration, code_page)), code_page);
    return wished;
}

} // namespace

void fill_from_state(TemplateSource& source, const SpecModel& spec, const WishedConfiguration& wished,
                     unsigned code_page) {
    DesiredEntries entries(spec, code_page);
    std::vector<std::optional<WishedValue>> values(spec.entries.size());
    for (const WishedValue& each : wished.values) {
        const std::size_t place = entries.place_of(each);
        values[place] = as_stored(each, spec.entries[place].declaration, code_page);
    }
    for_all(source, [&](TemplateEntry& entry) { entry.value = values[entry.place]; });
}

void fill_from_machine(TemplateSource& source) {
    for_all(source, [&](TemplateEntry& entry) { entry.value = present_value(source.key, entry.value_name); });
}

} // namespace ctl
