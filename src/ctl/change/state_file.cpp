#include "ctl/change/state_file.h"

#include "ctl/failure.h"
#include "ctl/io/files.h"
#include "ctl/io/reg_file.h"
#include "ctl/io/visible.h"

#include <algorithm>
#include <charconv>

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
        refuse(std::string("\"") + name + "\" of " + what + " is not an object");
    return *found;
}

void check_version(const JsonTree& state) {
    const JsonTree* const version = state.find("schema");
    const std::string ours = std::to_string(schema_version);
    if (version == nullptr)
        refuse("the state has no member \"schema\"");
    if (version->kind != Kind::whole_number)
        refuse("the state's \"schema\" is not a number; write " + ours + ", without quotes");
    if (version->text != ours)
        refuse("the state's schema is " + version->text + "; this program reads " + ours);
}

std::string why_no_whole_number(const std::string& literal) {
    return literal.find_first_of(".eE") == std::string::npos
               ? "out of range: whole numbers go from -2147483648 to 2147483647"
               : "not a whole number; write it in plain decimal digits";
}

WishedValue plain_value(const std::string& name, const JsonTree& value) {
    switch (value.kind) {
    case Kind::null: return {name, std::nullopt, Kind::null};
    case Kind::text:
    case Kind::boolean:
    case Kind::whole_number: return {name, value.text, value.kind};
    case Kind::fraction:
        refuse("the value " + quoted(name) + " is " + value.text + ", which is " +
               why_no_whole_number(value.text));
    default: refuse("the value " + quoted(name) + " must be a text, a whole number, true, false or null");
    }
}

std::optional<std::string> from_hex(const std::string& text) {
    std::string octets;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        unsigned char octet = 0;
        const char* const end = text.data() + i + 2;
        if (std::from_chars(text.data() + i, end, octet, 16).ptr != end)
            return std::nullopt;
        octets += static_cast<char>(octet);
    }
    return text.size() % 2 == 0 ? std::optional(octets) : std::nullopt;
}

WishedValue octets_value(const std::string& name, const JsonTree& value) {
    WishedValue wished{name, std::nullopt, Kind::text, text_member(value, "type"),
                       from_hex(text_member(value, "octets"))};
    if (wished.type.empty() || value.find("value") != nullptr)
        refuse("the value " + quoted(name) + " needs \"type\" beside \"octets\", and no \"value\"");
    if (!type_named(wished.type))
        refuse("the value " + quoted(name) + " has the unknown type " + quoted(wished.type));
    if (!wished.octets)
        refuse("the octets of the value " + quoted(name) + " must be two hexadecimal digits each");
    return wished;
}

/// Only texts are written in words; a program that printed a number so would lose its type.
WishedValue text_of_type(const std::string& name, const JsonTree& value, const std::string& type) {
    WishedValue wished = plain_value(name, value);
    if (type.empty() || type == "REG_SZ")
        return wished;
    if (type != "REG_EXPAND_SZ" || wished.written != Kind::text)
        refuse("the value " + quoted(name) + " of the type " + visible(type) + " has no member \"octets\"");
    wished.type = type;
    return wished;
}

/// An object without a value tells that show could not read one.
void add_value(std::vector<WishedValue>& values, const std::string& name, const JsonTree& value) {
    if (value.kind != Kind::object) {
        values.push_back(plain_value(name, value));
        return;
    }
    refuse_unknown(value, quoted(name), {"value", "group", "title", "kind", "type", "octets", "unreadable"});
    const JsonTree* const text = value.find("value");
    if (value.find("octets") != nullptr) {
        values.push_back(octets_value(name, value));
    } else if (text != nullptr) {
        values.push_back(text_of_type(name, *text, text_member(value, "type")));
    } else if (value.find("unreadable") == nullptr) {
        refuse("the value " + quoted(name) + " has no member \"value\"");
    }
}

Guards read_guards(const JsonTree& configuration, const std::string& what) {
    if (configuration.find("guards") == nullptr)
        return {};
    const JsonTree& guards = object_member(configuration, what, "guards");
    refuse_unknown(guards, "\"guards\" of " + what, {"key", "service", "sha256"});
    return {text_member(guards, "key"), text_member(guards, "service"), text_member(guards, "sha256")};
}

WishedConfiguration read_configuration(const std::string& name, const JsonTree& configuration) {
    const std::string what = "the configuration " + quoted(name);
    if (configuration.kind != Kind::object)
        refuse(what + " is not an object");
    refuse_unknown(
        configuration, what,
        {"service", "serviceState", "startType", "restartPending", "key", "values", "actions", "guards"});
    return {name, text_member(configuration, "key"),
            read_values(object_member(configuration, what, "values")), text_member(configuration, "service"),
            read_guards(configuration, what)};
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
        refuse("\"" + std::string(name) + "\" is not a text");
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
        refuse("the state is not an object");
    check_version(tree);
    refuse_unknown(tree, "the state", {"schema", "machine", "specFiles", "configurations"});
    State state;
    for (const JsonMember& member : object_member(tree, "the state", "configurations").members)
        state.push_back(read_configuration(member.name, member.value));
    return state;
}

State read_state_file(const std::string& path) {
    const auto octets = read_file(path, longest_json);
    if (!octets)
        throw Failure{failed, path + ": " + why_unreadable()};
    try {
        return read_state(*octets);
    } catch (const Failure& failure) {
        throw Failure{failure.code, path + ": " + failure.text};
    }
}

} // namespace ctl
