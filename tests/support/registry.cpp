#include "support/registry.h"

#include <gmock/gmock.h>

namespace {

class Key {
public:
    Key(const std::string& path, REGSAM access) {
        status_ = RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, access | KEY_WOW64_64KEY, &key_);
    }
    ~Key() {
        if (status_ == ERROR_SUCCESS)
            RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LSTATUS status() const { return status_; }
    HKEY get() const { return key_; }

private:
    HKEY key_ = nullptr;
    LSTATUS status_;
};

} // namespace

std::ostream& operator<<(std::ostream& out, const RawValue& value) {
    return out << "type " << value.type << ": " << testing::PrintToString(value.bytes);
}

void make_key(const std::string& path) {
    HKEY key = nullptr;
    const LSTATUS status = RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0,
                                           KEY_READ | KEY_WOW64_64KEY, nullptr, &key, nullptr);
    ASSERT_EQ(status, ERROR_SUCCESS) << path;
    RegCloseKey(key);
}

void delete_key(const std::string& path) {
    const LSTATUS status = RegDeleteTreeA(HKEY_LOCAL_MACHINE, path.c_str());
    if (status != ERROR_FILE_NOT_FOUND) {
        ASSERT_EQ(status, ERROR_SUCCESS) << path;
    }
}

bool key_exists(const std::string& path) { return Key(path, KEY_QUERY_VALUE).status() == ERROR_SUCCESS; }

void set_value(const std::string& path, const std::string& name, DWORD type, const std::string& bytes) {
    const Key key(path, KEY_SET_VALUE);
    ASSERT_EQ(key.status(), ERROR_SUCCESS) << path;
    // If a zero followed an unterminated string, the system would store it as well.
    const std::string guarded = bytes + '#';
    const LSTATUS status =
        RegSetValueExA(key.get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                       static_cast<DWORD>(bytes.size()));
    ASSERT_EQ(status, ERROR_SUCCESS) << path << ", " << name;
}

void set_text(const std::string& path, const std::string& name, const std::string& text) {
    set_value(path, name, REG_SZ, text + '\0');
}

void delete_value(const std::string& path, const std::string& name) {
    const Key key(path, KEY_SET_VALUE);
    ASSERT_EQ(RegDeleteValueA(key.get(), name.c_str()), ERROR_SUCCESS) << path << ", " << name;
}

std::optional<RawValue> raw_value(const std::string& path, const std::string& name) {
    const Key key(path, KEY_QUERY_VALUE);
    RawValue value{};
    DWORD size = 0;
    if (RegQueryValueExA(key.get(), name.c_str(), nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.bytes.resize(size);
    RegQueryValueExA(key.get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(value.bytes.data()),
                     &size);
    return value;
}

std::string text_value(const std::string& path, const std::string& name) {
    const auto value = raw_value(path, name);
    if (!value || value->type != REG_SZ || !value->bytes.ends_with('\0'))
        return "no REG_SZ";
    return value->bytes.substr(0, value->bytes.size() - 1);
}
