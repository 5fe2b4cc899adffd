/// The stores with a registry of any content: the input is a row of steps, of which some write raw values of
/// every type and length and others read and write them through the stores. What the stores give, and what
/// they leave behind, must be what a plain reading of the rules gives.
#include "fuzz/input.h"
#include "store/common_reg_key.h"
#include "store/delete_reg_key.h"
#include "store/registry_key.h"
#include "substitute/control.h"

#include <map>
#include <optional>

namespace {

const std::string path = "SOFTWARE\\Agent";

struct Value {
    std::string name; // as first written
    DWORD type;
    std::string bytes;
};

/// What the registry must hold: the key's values by their name in lower case, or no key.
using Values = std::map<std::string, Value>;
std::optional<Values> expected;
bool has_subkey = false;

std::string small(std::string name) {
    for (char& byte : name)
        byte = static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte);
    return name;
}

/// Up to the first zero byte; at most 1,023 of at most 1,024 bytes, and nothing of more.
std::string plain_text(const std::string& bytes) {
    return bytes.size() > 1024 ? "" : bytes.substr(0, 1023).substr(0, bytes.find('\0'));
}

std::string thrown_by(auto action) {
    try {
        action();
    } catch (const std::string& text) {
        return text;
    }
    return "nothing";
}

HKEY open(REGSAM access) {
    HKEY key = nullptr;
    require(RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &key) == ERROR_SUCCESS);
    return key;
}

void create(const std::string& whole_path) {
    HKEY key = nullptr;
    require(RegCreateKeyExA(HKEY_LOCAL_MACHINE, whole_path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                            KEY_READ, nullptr, &key, nullptr) == ERROR_SUCCESS);
    RegCloseKey(key);
}

/// Few short names, so that steps meet, and any long one.
std::string take_name(Input& input) {
    static const char* const names[] = {"", "Name", "NAME", "Port", "n\xE4me"};
    const std::uint8_t choice = input.octet() % 8;
    return choice < 5 ? names[choice] : std::string(input.long_text().c_str());
}

void remember(const std::string& name, DWORD type, const std::string& bytes) {
    Value& value = expected->try_emplace(small(name), Value{name, 0, {}}).first->second;
    value.type = type;
    value.bytes = bytes;
}

void set_raw(Input& input) {
    const std::string name = take_name(input);
    const DWORD type = input.octet();
    const std::string bytes = input.long_text();
    if (!expected)
        return;
    // The system takes along a zero behind an unterminated string: there is none.
    const std::string guarded = bytes + '#';
    HKEY key = open(KEY_SET_VALUE);
    require(RegSetValueExA(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                           static_cast<DWORD>(bytes.size())) == ERROR_SUCCESS);
    RegCloseKey(key);
    remember(name, type, bytes);
}

void delete_raw(Input& input) {
    const std::string name = take_name(input);
    if (!expected)
        return;
    HKEY key = open(KEY_SET_VALUE);
    const bool deleted = RegDeleteValueA(key, name.c_str()) == ERROR_SUCCESS;
    RegCloseKey(key);
    require(deleted == (expected->erase(small(name)) == 1));
}

void check_raw(const std::string& name) {
    HKEY key = open(KEY_QUERY_VALUE);
    std::string bytes(5000, '#');
    auto size = static_cast<DWORD>(bytes.size());
    DWORD type = 0;
    require(RegQueryValueExA(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()),
                             &size) == ERROR_SUCCESS);
    RegCloseKey(key);
    const Value& value = expected->at(small(name));
    require(type == value.type && bytes.substr(0, size) == value.bytes);
}

void read_value(Input& input) {
    const std::string name = take_name(input);
    CommonRegKey store(path, name, false);
    store.set_value("edited");
    const std::string thrown = thrown_by([&] { store.read(); });
    if (!expected)
        return require(thrown == "Cannot open path \"" + path + "\" for reading" && store.changed());
    const auto value = expected->find(small(name));
    require(thrown == "nothing" && !store.changed());
    require(store.value() == (value == expected->end() ? "" : plain_text(value->second.bytes)));
}

void write_value(Input& input) {
    const std::string name = take_name(input);
    const std::string text = input.long_text();
    CommonRegKey store(path, name, false);
    store.set_value(text);
    const std::string thrown = thrown_by([&] { store.write(); });
    if (!expected)
        return require(thrown == "Cannot open path \"" + path + "\" for writing");
    require(thrown == "nothing" && !store.changed() && store.value() == text);
    std::string bytes = text.substr(0, text.find('\0')) + '\0';
    remember(name, REG_SZ, bytes.substr(0, 1024));
    check_raw(name);
}

void enumerate(Input& input) {
    std::map<std::string, std::string> found = {{"Port", "known"}};
    std::map<std::string, std::string> all = found;
    const std::string thrown = thrown_by([&] { enumerate_values(found, HKEY_LOCAL_MACHINE, path); });
    require(thrown == (expected ? "nothing" : "Cannot read out " + path));
    for (const auto& [_, value] : expected.value_or(Values{})) {
        const std::string text = plain_text(value.bytes);
        if (!text.empty() && value.name.size() < 1024)
            all.emplace(value.name, text);
    }
    require(found == all);
    static_cast<void>(input);
}

void delete_whole_key(Input& input) {
    const bool wanted = input.flag();
    DeleteRegKey store(path);
    require(store.exists() == expected.has_value());
    store.request_delete(wanted);
    require(store.changed() == (wanted && expected));
    store.write();
    if (wanted && !has_subkey)
        expected.reset();
    require(store.exists() == expected.has_value() && store.changed() == (wanted && expected));
}

void make_keys(Input& input) {
    has_subkey = input.flag();
    create(has_subkey ? path + "\\Below" : path);
    if (!has_subkey)
        RegDeleteKeyA(HKEY_LOCAL_MACHINE, (path + "\\Below").c_str());
    if (!expected)
        expected.emplace();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static void (*const steps[])(Input&) = {set_raw,   set_raw,    read_value,       write_value,
                                            enumerate, delete_raw, delete_whole_key, make_keys};
    substitute::reset();
    create(path);
    expected.emplace();
    has_subkey = false;
    Input input(data, size);
    while (!input.done())
        steps[input.octet() % std::size(steps)](input);
    enumerate(input);
    require(substitute::open_keys() == 0);
    return 0;
}
