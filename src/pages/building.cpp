#include "pages/building.h"

#include "base/trace.h"
#include "pages/kinds/actions.h"
#include "pages/kinds/option_entry.h"
#include "pages/kinds/selectors.h"
#include "pages/kinds/server_list_entry.h"
#include "pages/kinds/value_entries.h"
#include "pages/settings.h"
#include "store/registry_key.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

namespace {

/// Every entry's constructor takes the text of its subspec after its first argument.
template <typename Entry, typename First, typename... More>
OwnedEntry entry_of(const Declaration& declaration, Settings& target, First first, More&&... more) {
    void* const place = target.entry_memory.take(sizeof(Entry));
    return {new (place) Entry(std::move(first), declaration.subspec, std::forward<More>(more)...),
            {[](BaseEntry* entry) { std::destroy_at(static_cast<Entry*>(entry)); }}};
}

CommonRegKey binding(const Declaration& declaration, const Settings& target) {
    return {target.registryPath, declaration.value_name.text, !target.connectionTestOnly};
}

template <typename Entry> OwnedEntry build_value(const Declaration& declaration, Settings& target) {
    return entry_of<Entry>(declaration, target, binding(declaration, target));
}

OwnedEntry build_options(const Declaration& declaration, Settings& target) {
    std::vector<std::string> options;
    for (const SpecLine& line : declaration.further)
        options.emplace_back(line.text);
    return entry_of<OptionEntry>(declaration, target, binding(declaration, target), std::move(options));
}

OwnedEntry build_serial_port(const Declaration& declaration, Settings& target) {
    return entry_of<OptionEntry>(declaration, target, binding(declaration, target), serial_ports());
}

OwnedEntry build_delete_key(const Declaration& declaration, Settings& target) {
    std::string path = target.registryPath + "\\" + std::string(declaration.value_name.text);
    return entry_of<DeleteKey>(declaration, target, DeleteRegKey(std::move(path)));
}

OwnedEntry build_signal(const Declaration& declaration, Settings& target) {
    return entry_of<SignalEvent>(declaration, target, std::string(declaration.value_name.text));
}

OwnedEntry build_file(const Declaration& declaration, Settings& target) {
    const bool has_extension = !declaration.further.empty();
    std::string extension(has_extension ? declaration.further.front().text : std::string_view());
    return entry_of<FileSelector>(declaration, target, binding(declaration, target), std::move(extension));
}

OwnedEntry build_server_list(const Declaration& declaration, Settings& target) {
    return entry_of<ServerListEntry>(declaration, target, binding(declaration, target), target);
}

OwnedEntry set_up_connection_test(const Declaration& declaration, Settings& target) {
    target.offersConnectionTest = true;
    target.agent_name_title = declaration.further[0].text;
    target.agent_domain_title = declaration.further[1].text;
    target.server_list_title = declaration.further[2].text;
    target.default_port_title = declaration.further[3].text;
    trace("Found a ConnectionTest1\n");
    trace("Found agent_name_title: %s\n", target.agent_name_title.c_str());
    trace("Found agent_domain_title: %s\n", target.agent_domain_title.c_str());
    trace("Found server_list_title: %s\n", target.server_list_title.c_str());
    trace("Found default_port_title: %s\n", target.default_port_title.c_str());
    return {};
}

/// The entry for a kind; the table in spec_text.h has its lines.
struct EntryBuilder {
    std::string_view type;
    /// Creates the entry; null if the declaration only changes the configuration.
    OwnedEntry (*build)(const Declaration&, Settings&);
    /// Also built when the configuration serves the connection test only.
    bool for_connection_test = false;
};

constexpr EntryBuilder entry_builders[] = {
    {.type = "String", .build = &build_value<StringEntry>},
    {.type = "string", .build = &build_value<StringEntry>},
    {.type = "Integer", .build = &build_value<IntegerEntry>},
    {.type = "Boolean", .build = &build_value<BooleanEntry>},
    {.type = "Options", .build = &build_options},
    {.type = "COM", .build = &build_serial_port},
    {.type = "RemoveKey", .build = &build_delete_key},
    {.type = "SignalEvent", .build = &build_signal},
    {.type = "Directory", .build = &build_value<DirectorySelector>},
    {.type = "File", .build = &build_file},
    {.type = "ServerList", .build = &build_server_list, .for_connection_test = true},
    {.type = "ConnectionTest", .build = &set_up_connection_test, .for_connection_test = true},
};

constexpr bool is_builder_of(const EntryKind& kind, const EntryBuilder& builder) {
    return kind.type == builder.type;
}
static_assert(std::equal(std::begin(entry_kinds), std::end(entry_kinds), std::begin(entry_builders),
                         std::end(entry_builders), is_builder_of),
              "every kind has its builder, in the order of the kinds");

const EntryBuilder& builder_of(const EntryKind& kind) { return entry_builders[&kind - entry_kinds]; }

/// Builds a configuration from the statements of a spec file.
class Builder {
public:
    Builder(Settings& target, const SpecErrorReport& unknown_type_found)
        : target_(target), unknown_type_found_(unknown_type_found) {}

    void take_head(const SpecReader& reader, const std::string& registry_value_name);
    void take(const ServiceName& service) { target_.serviceName = service.name.text; }
    void take(const GroupStart& group);
    void take(const Declaration& declaration);
    [[noreturn]] static void take(const SpecError& error) { throw error.text; }

private:
    void take_unknown(const Declaration& declaration) const;

    Settings& target_;
    const SpecErrorReport& unknown_type_found_;
};

void Builder::take_head(const SpecReader& reader, const std::string& registry_value_name) {
    target_.registryPath = reader.registry_path().text;
    trace(reader.is_old() ? "Reading old file\n" : "Reading new file\n");
    target_.name = reader.is_old() ? registry_value_name : std::string(reader.name().text);
}

void Builder::take(const GroupStart& group) {
    if (group.is_implied)
        trace("No groups in file\n");
    target_.groups.emplace_back().name = group.name.text;
}

void Builder::take(const Declaration& declaration) {
    if (declaration.kind == nullptr) {
        take_unknown(declaration);
        return;
    }
    const EntryBuilder& builder = builder_of(*declaration.kind);
    if (target_.connectionTestOnly && !builder.for_connection_test)
        return;
    if (OwnedEntry entry = builder.build(declaration, target_))
        target_.groups.back().entries.push_back(std::move(entry));
}

void Builder::take_unknown(const Declaration& declaration) const {
    const SpecError error = unknown_type(declaration);
    if (target_.connectionTestOnly)
        throw error.text;
    unknown_type_found_(error);
}

} // namespace

void build_settings(Settings& target, const std::string& registry_value_name, std::string text,
                    const SpecErrorReport& unknown_type_found) {
    target.spec_text = std::move(text);
    SpecReader reader(target.spec_text);
    Builder builder(target, unknown_type_found);
    builder.take_head(reader, registry_value_name);
    while (const SpecStatement* const statement = reader.next())
        std::visit([&](const auto& said) { builder.take(said); }, *statement);
}
