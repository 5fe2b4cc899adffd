#pragma once
/// Keys and values under HKEY_LOCAL_MACHINE, for tests to prepare and check. A function that fails also makes
/// the test fail.
#include "platform/win32.h"

#include <optional>
#include <ostream>
#include <string>

/// Tests use only keys below this one, which CleanSystem removes.
inline const std::string test_key = "SOFTWARE\\TavrinTests";

struct RawValue {
    DWORD type;
    std::string bytes;

    bool operator==(const RawValue&) const = default;
};
std::ostream& operator<<(std::ostream& out, const RawValue& value);

/// Creates the key and those above it, unless they exist.
void make_key(const std::string& path);
/// Removes the key and everything below it, if it exists.
void delete_key(const std::string& path);
bool key_exists(const std::string& path);

/// Writes exactly these bytes into a key, which must exist.
void set_value(const std::string& path, const std::string& name, DWORD type, const std::string& bytes);
/// Writes REG_SZ with the terminating zero.
void set_text(const std::string& path, const std::string& name, const std::string& text);
void delete_value(const std::string& path, const std::string& name);

/// Nothing when the key or the value is missing.
std::optional<RawValue> raw_value(const std::string& path, const std::string& name);
/// The bytes of REG_SZ as text without the terminating zero; "no REG_SZ" for anything else.
std::string text_value(const std::string& path, const std::string& name);
