#include "store/common_reg_key.h"

#include "store/registry_key.h"

#include <algorithm>
#include <cstring>
#include <utility>

CommonRegKey::CommonRegKey(const std::string& path, std::string_view value_name, bool read_now)
    : path_(&path), value_name_(value_name) {
    if (read_now)
        CommonRegKey::read();
}

void CommonRegKey::read() {
    const RegistryKeyHandle key(HKEY_LOCAL_MACHINE, *path_, KEY_QUERY_VALUE);
    if (!key)
        throw "Cannot open path \"" + *path_ + "\" for reading";
    value_ = query_value_text(key.get(), std::string(value_name_).c_str()).value_or("");
    stored_value_.reset();
}

void CommonRegKey::set_value(std::string value) {
    if (value == value_)
        return;
    if (!stored_value_)
        stored_value_ = std::make_unique<std::string>(std::move(value_));
    value_ = std::move(value);
}

void CommonRegKey::write() {
    const RegistryKeyHandle key(HKEY_LOCAL_MACHINE, *path_, KEY_SET_VALUE);
    if (!key)
        throw "Cannot open path \"" + *path_ + "\" for writing";
    const std::string name(value_name_);
    // A text of up to 1,023 characters is written with its terminating zero, so that at most 1,024 bytes are.
    // A longer one fills the buffer and is written as 1,024 bytes without a terminator. If a
    // string has no terminator, the system reads the next byte as well and includes it if it is zero; the
    // value would then have 1,025 bytes and read as empty. So the buffer has one more byte, which is not
    // zero.
    char buffer[value_buffer_size + 1];
    std::strncpy(buffer, value_.c_str(), value_buffer_size);
    buffer[value_buffer_size] = '#';
    const auto end = std::find(buffer, buffer + value_buffer_size, '\0');
    const auto size = std::min(static_cast<DWORD>(end - buffer) + 1, value_buffer_size);
    if (RegSetValueExA(key.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(buffer), size) !=
        ERROR_SUCCESS)
        throw "Cannot write key " + name;
    stored_value_.reset();
}
