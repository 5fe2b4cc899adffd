#include "ctl/io/json.h"

#include "ctl/failure.h"
#include "ctl/io/printable.h"

#include <algorithm>

namespace ctl {
namespace {

using Kind = JsonTree::Kind;

[[noreturn]] void refuse(const std::string& text) { throw Failure{ExitCode::invalid, text}; }

/// Removes the library's name for the kind of error, and the text that it read last, which may be long,
/// secret or not UTF-8. Line and column say where the error is.
std::string own_words(std::string words) {
    words.erase(0, words.find("] ") + 2);
    const std::size_t quoted = words.find("; last read: '");
    const std::size_t expected = words.rfind("'; expected ");
    if (quoted != std::string::npos)
        words.erase(quoted, expected == std::string::npos ? expected : expected + 1 - quoted);
    return words;
}

void refuse_repeated_names(const std::vector<JsonMember>& members) {
    std::vector<std::string_view> names(members.size());
    std::transform(members.begin(), members.end(), names.begin(),
                   [](const JsonMember& each) { return std::string_view(each.name); });
    std::sort(names.begin(), names.end());
    const auto repeated = std::adjacent_find(names.begin(), names.end());
    if (repeated != names.end())
        refuse("\"" + printable(*repeated) + "\" occurs twice in one object");
}

/// Handles the parser's events, so that input is refused before it costs memory.
class TreeBuilder final : public nlohmann::json_sax<Json> {
public:
    bool null() override { return put(Kind::null, {}); }
    bool boolean(bool value) override { return put(Kind::boolean, value ? "true" : "false"); }
    bool number_integer(number_integer_t value) override {
        return put(Kind::whole_number, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return put(Kind::whole_number, std::to_string(value));
    }
    bool number_float(number_float_t, const string_t& literal) override {
        return put(Kind::fraction, literal);
    }
    bool string(string_t& value) override { return put(Kind::text, std::move(value)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(Kind::object); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(Kind::array); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override;
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& failure) override {
        refuse(own_words(failure.what()));
    }

    JsonTree take() { return std::move(root_); }

private:
    bool put(Kind kind, std::string text);
    bool open(Kind kind);
    bool close();
    JsonTree& place();

    JsonTree root_;
    std::vector<JsonTree*> open_;
    std::string name_;
};

/// The place of the next value. Only the last member of an open tree can be open, so the others may move.
JsonTree& TreeBuilder::place() {
    if (open_.empty())
        return root_;
    return open_.back()->members.emplace_back(JsonMember{std::move(name_), {}}).value;
}

bool TreeBuilder::put(Kind kind, std::string text) {
    JsonTree& tree = place();
    tree.kind = kind;
    tree.text = std::move(text);
    return true;
}

bool TreeBuilder::open(Kind kind) {
    if (open_.size() == deepest_json)
        refuse("the nesting is deeper than " + std::to_string(deepest_json));
    JsonTree& tree = place();
    tree.kind = kind;
    open_.push_back(&tree);
    return true;
}

bool TreeBuilder::close() {
    if (open_.back()->kind == Kind::object)
        refuse_repeated_names(open_.back()->members);
    open_.pop_back();
    return true;
}

bool TreeBuilder::key(string_t& name) {
    name_ = std::move(name);
    return true;
}

/// The parser would take a zero byte for the end.
void refuse_other_encodings(std::string_view octets) {
    if (octets.starts_with("\xFF\xFE") || octets.starts_with("\xFE\xFF"))
        refuse("the text is UTF-16; save it as UTF-8");
    if (octets.find('\0') != std::string_view::npos)
        refuse("the text has a zero byte");
}

} // namespace

std::string to_text(const Json& json) {
    return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

std::string to_line(const Json& json) {
    return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

const JsonTree* JsonTree::find(std::string_view name) const {
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const JsonMember& each) { return each.name == name; });
    return found == members.end() ? nullptr : &found->value;
}

JsonTree read_json(std::string_view octets) {
    if (octets.size() > longest_json)
        refuse("the text is larger than 16 MiB");
    refuse_other_encodings(octets);
    TreeBuilder builder;
    Json::sax_parse(octets.begin(), octets.end(), &builder);
    return builder.take();
}

} // namespace ctl
