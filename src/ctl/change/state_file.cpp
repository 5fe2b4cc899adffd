#include "ctl/change/state_file.h"

#include "ctl/failure.h"
#include "ctl/io/printable.h"
#include "ctl/io/reg_file.h"
#include "ctl/io/system.h"

#include <algorithm>
#include <charconv>

namespace ctl {
namespace {

using Kind = JsonTree::Kind;

[[noreturn]] void refuse(const std::string& text) { throw Failure{ExitCode::invalid, text}; }

std::string in_quotes(const std::string& name) { return "\"" + printable(name) + "\""; }

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

DesiredValue plain_value(const std::string& name, const JsonTree& value) {
    switch (value.kind) {
    case Kind::null: return {name, std::nullopt, Kind::null};
    case Kind::text:
    case Kind::boolean:
    case Kind::whole_number: return {name, value.text, value.kind};
    case Kind::fraction:
        refuse("the value " + in_quotes(name) + " is " + value.text + ", which is " +
               why_no_whole_number(value.text));
    default: refuse("the value " + in_quotes(name) + " must be a text, a whole number, true, false or null");
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

DesiredValue octets_value(const std::string& name, const JsonTree& value) {
    DesiredValue desired{name, std::nullopt, Kind::text, text_member(value, "type"),
                         from_hex(text_member(value, "octets"))};
    if (desired.type.empty() || value.find("value") != nullptr)
        refuse("the value " + in_quotes(name) + " needs \"type\" beside \"octets\", and no \"value\"");
    if (!type_named(desired.type))
        refuse("the value " + in_quotes(name) + " has the unknown type " + in_quotes(desired.type));
    if (!desired.octets)
        refuse("the octets of the value " + in_quotes(name) + " must be two hexadecimal digits each");
    return desired;
}

/// Values of other types need their octets: a number written as a text would lose its type.
DesiredValue text_of_type(const std::string& name, const JsonTree& value, const std::string& type) {
    DesiredValue desired = plain_value(name, value);
    if (type.empty() || type == "REG_SZ")
        return desired;
    if (type != "REG_EXPAND_SZ" || desired.written != Kind::text) {
        refuse("the value " + in_quotes(name) + " of the type " + printable(type) +
               " has no member \"octets\"");
    }
    desired.type = type;
    return desired;
}

/// `show` prints an object with "unreadable" for a value that it could not read; the value is passed over.
void add_value(std::vector<DesiredValue>& values, const std::string& name, const JsonTree& value) {
    if (value.kind != Kind::object) {
        values.push_back(plain_value(name, value));
        return;
    }
    refuse_unknown(value, in_quotes(name),
                   {"value", "group", "title", "kind", "type", "octets", "unreadable"});
    const JsonTree* const text = value.find("value");
    if (value.find("octets") != nullptr) {
        values.push_back(octets_value(name, value));
    } else if (text != nullptr) {
        values.push_back(text_of_type(name, *text, text_member(value, "type")));
    } else if (value.find("unreadable") == nullptr) {
        refuse("the value " + in_quotes(name) + " has no member \"value\"");
    }
}

Guards read_guards(const JsonTree& configuration, const std::string& what) {
    if (configuration.find("guards") == nullptr)
        return {};
    const JsonTree& guards = object_member(configuration, what, "guards");
    refuse_unknown(guards, "\"guards\" of " + what, {"key", "service", "sha256"});
    return {text_member(guards, "key"), text_member(guards, "service"), text_member(guards, "sha256")};
}

DesiredConfiguration read_configuration(const std::string& name, const JsonTree& configuration) {
    const std::string what = "the configuration " + in_quotes(name);
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
            refuse(what + " has an unknown member " + in_quotes(member.name));
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

std::vector<DesiredValue> read_values(const JsonTree& values) {
    std::vector<DesiredValue> desired;
    desired.reserve(values.members.size());
    for (const JsonMember& member : values.members)
        add_value(desired, member.name, member.value);
    return desired;
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
        throw Failure{ExitCode::failed, path + ": " + why_unreadable()};
    try {
        return read_state(*octets);
    } catch (const Failure& failure) {
        throw Failure{failure.code, path + ": " + failure.text};
    }
}

} // namespace ctl
