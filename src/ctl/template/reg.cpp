#include "ctl/io/reg_file.h"
#include "ctl/template/formats.h"

namespace ctl {

std::string write_reg(const TemplateSource& source) {
    RegFile file;
    file.key(source.key);
    for (const TemplateGroup& group : source.groups) {
        for (const TemplateEntry& entry : group.entries) {
            if (entry.value) {
                file.text(entry.value_name, *entry.value);
            } else {
                file.comment("\"" + entry.value_name + "\" has no value");
            }
        }
    }
    return file.octets();
}

} // namespace ctl
