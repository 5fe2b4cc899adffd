#include "ctl/change/state_file.h"

#include "ctl/failure.h"
#include "ctl/io/files.h"
#include "ctl/io/visible.h"

#include <algorithm>

namespace ctl {
namespace {

using Kind = JsonTree::Kind;

[[noreturn]] void refuse(const std::string& text) { throw Failure{invalid, text}; }

std::string quoted(const std::string& name) { return "\"" + visible(name) + "\""; }

const JsonTree& object_member(const JsonTree& object, const std::string& what, const char* name) {
    const JsonTree* const found = object.find(name);
    if (found == nullptr)
        refuse(what + " has no member \"" + name + "\"");
    if (found->kind != Kind::object)
        refuse(std::string("\"") + name + "\" of " + what + " is no object");
    return *found;
}

void check_version(const JsonTree& state) {
    const JsonTree* const version = state.find("schema");
    if (version == nullptr)
        refuse("the state has no member \"schema\"");
    if (version->kind != Kind::whole_number || version->text != std::to_string(schema_version)) {
        refuse("the state's schema is " + visible(version->text) + "; this program reads " +
               std::to_string(schema_version));
    }
}

WishedValue plain_value(const std::string& name, const JsonTree& value) {
    switch (value.kind) {
    case Kind::null: return {name, std::nullopt, Kind::null};
    case Kind::text:
    case Kind::boolean:
    case Kind::whole_number: return {name, value.text, value.kind};
    default: refuse("the value " + quoted(name) + " is neither a text nor a number, true, false or null");
    }
}

/// An object without a value tells that show could not read one.
void add_value(std::vector<WishedValue>& values, const std::string& name, const JsonTree& value) {
    if (value.kind != Kind::object) {
        values.push_back(plain_value(name, value));
        return;
    }
    refuse_unknown(value, quoted(name), {"value", "group", "title", "kind", "type", "unreadable"});
    const JsonTree* const text = value.find("value");
    if (text != nullptr) {
        values.push_back(plain_value(name, *text));
    } else if (value.find("unreadable") == nullptr) {
        refuse("the value " + quoted(name) + " has no member \"value\"");
    }
}

WishedConfiguration read_configuration(const std::string& name, const JsonTree& configuration) {
    if (configuration.kind != Kind::object)
        refuse("the configuration " + quoted(name) + " is no object");
    const std::string what = "the configuration " + quoted(name);
    refuse_unknown(configuration, what, {"service", "key", "values", "actions"});
    return {name, text_member(configuration, "key"),
            read_values(object_member(configuration, what, "values"))};
}

} // namespace

void refuse_unknown(const JsonTree& object, const std::string& what,
                    const std::vector<std::string_view>& known) {
    for (const JsonMember& member : object.members) {
        if (std::find(known.begin(), known.end(), member.name) == known.end())
            refuse(what + " has an unknown member " + quoted(member.name));
    }
}

std::string text_member(const JsonTree& object, std::string_view name) {
    const JsonTree* const found = object.find(name);
    if (found == nullptr)
        return {};
    if (found->kind != Kind::text)
        refuse("\"" + std::string(name) + "\" is no text");
    return found->text;
}

std::vector<WishedValue> read_values(const JsonTree& values) {
    std::vector<WishedValue> wished;
    wished.reserve(values.members.size());
    for (const JsonMember& member : values.members)
        add_value(wished, member.name, member.value);
    return wished;
}

State read_state(std::string_view octets) {
    const JsonTree tree = read_json(octets);
    if (tree.kind != Kind::object)
        refuse("the state is no object");
    check_version(tree);
    refuse_unknown(tree, "the state", {"schema", "configurations"});
    State state;
    for (const JsonMember& member : object_member(tree, "the state", "configurations").members)
        state.push_back(read_configuration(member.name, member.value));
    return state;
}

State read_state_file(const std::string& path) {
    const auto octets = read_file(path, longest_json);
    if (!octets)
        throw Failure{failed, path + ": the file cannot be read"};
    try {
        return read_state(*octets);
    } catch (const Failure& failure) {
        throw Failure{failure.code, path + ": " + failure.text};
    }
}

} // namespace ctl
