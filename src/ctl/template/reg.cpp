#include "ctl/io/encoding.h"
#include "ctl/io/reg_file.h"
#include "ctl/template/formats.h"

namespace ctl {
namespace {

void add(RegFile& file, const TemplateEntry& entry) {
    if (!entry.value) {
        file.comment("\"" + entry.value_name + "\" has no value");
        return;
    }
    const DesiredValue& value = *entry.value;
    const auto type = type_named(value.type);
    if (value.octets) {
        file.raw(entry.value_name, {type.value(), *value.octets});
    } else if (!value.text) {
        file.absent(entry.value_name);
    } else if (type) {
        file.raw(entry.value_name, {*type, to_utf16(*value.text + '\0')});
    } else {
        file.text(entry.value_name, *value.text);
    }
}

} // namespace

std::string write_reg(const TemplateSource& source) {
    RegFile file;
    file.key(source.key);
    for (const TemplateGroup& group : source.groups) {
        for (const TemplateEntry& entry : group.entries)
            add(file, entry);
    }
    return file.octets();
}

} // namespace ctl
