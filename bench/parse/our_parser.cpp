#include "pages/building.h"
#include "pages/configuration.h"
#include "pages/kinds/selectors.h"
#include "pages/kinds/value_entries.h"
#include "parse/settings.h"

namespace parse {
namespace {

Kind kind_of(BaseEntry& entry) {
    if (dynamic_cast<StringEntry*>(&entry) != nullptr)
        return Kind::string;
    if (dynamic_cast<IntegerEntry*>(&entry) != nullptr)
        return Kind::integer;
    return dynamic_cast<BooleanEntry*>(&entry) != nullptr ? Kind::boolean : Kind::directory;
}

std::string description(const Configuration& configuration) {
    std::string text =
        configuration.registryPath + '|' + configuration.name + '|' + configuration.serviceName + '\n';
    for (const ::Group& group : configuration.groups) {
        text += group.name + '\n';
        for (const OwnedEntry& entry : group.entries)
            text += std::string(entry->title()) + '|' + std::string(entry->help_text()) + '|' +
                    std::string(name_of(kind_of(*entry))) + '|' +
                    dynamic_cast<CommonRegKey&>(*entry).value() + '\n';
    }
    return text;
}

void from_text(const std::string& text, std::string* described) {
    Configuration configuration(false);
    build_settings(configuration, "Agent", text, show_spec_error);
    if (described != nullptr)
        *described = description(configuration);
}

void from_file(const std::string& path, std::string* described) {
    const Configuration configuration("Agent", path, false);
    if (described != nullptr)
        *described = description(configuration);
}

std::size_t memory(const std::string& text) {
    const std::size_t before = allocated();
    Configuration configuration(false);
    build_settings(configuration, "Agent", text, show_spec_error);
    return allocated() - before;
}

} // namespace

const Parser our_parser = {"tavrinconfig", from_text, from_file, memory};

} // namespace parse
