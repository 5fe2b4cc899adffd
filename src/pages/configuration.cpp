#include "pages/configuration.h"

#include "pages/building.h"
#include "window/boxes.h"

#include <optional>
#include <utility>

Configuration::Configuration(const std::string& registry_value_name, const std::string& path,
                             bool connection_test_only)
    : Settings(connection_test_only) {
    std::optional<std::string> file = read_spec_file(path);
    if (!file && connectionTestOnly)
        throw "Unable to open file: " + path;
    if (file)
        build_settings(*this, registry_value_name, std::move(*file), show_spec_error);
}

bool Configuration::has_changes() {
    if (shown_entry != nullptr)
        shown_entry->takeValue();
    return (shown_entry != nullptr && shown_entry->changed()) || !changed_entries.empty();
}

void show_spec_error(const SpecError& error) {
    show_box({.text = error.text, .caption = "Error", .style = MB_ICONERROR});
}
