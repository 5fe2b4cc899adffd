#pragma once
/// Keys of the registry and the values below them, as text.
#include "base/text.h"
#include "platform/win32.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Owns an open registry key. False if it could not be opened.
class RegistryKeyHandle {
public:
    RegistryKeyHandle(HKEY root, const std::string& path, REGSAM access)
        : status_(RegOpenKeyExA(root, path.c_str(), 0, access, &key_)) {
        if (status_ != ERROR_SUCCESS)
            key_ = nullptr;
    }
    ~RegistryKeyHandle() {
        if (key_ != nullptr)
            RegCloseKey(key_);
    }
    RegistryKeyHandle(const RegistryKeyHandle&) = delete;
    RegistryKeyHandle& operator=(const RegistryKeyHandle&) = delete;

    explicit operator bool() const { return key_ != nullptr; }
    HKEY get() const { return key_; }
    /// The system's return code.
    LSTATUS status() const { return status_; }

private:
    HKEY key_ = nullptr;
    LSTATUS status_;
};

/// The size of the buffers for reading and writing values, in bytes.
inline constexpr DWORD value_buffer_size = longest_value + 1;

/// A value's data as it is in the registry.
struct ValueData {
    char octets[value_buffer_size];
    DWORD size = value_buffer_size;

    /// Up to the first zero byte and cut to 1,023 characters.
    std::string text();
};

/// Reads a value's data, and its type if that is requested. Returns the system's return code.
LSTATUS query_value(HKEY key, const char* name, ValueData& data, DWORD* type = nullptr);

/// A value's data of whatever type, as text up to its first zero byte and cut to 1,023 characters. Nothing
/// when the value is missing or its data is longer than 1,024 bytes.
std::optional<std::string> query_value_text(HKEY key, const char* name);

/// Adds (name, data as text) for each value of the key `path` under `root` whose data, read up to its first
/// zero byte, is not empty. Names already in `target` stay as they are. Values that cannot be read, among
/// them those with a name over 1,023 or data over 1,024 bytes, are skipped. Throws a text when the key cannot
/// be read.
void enumerate_values(std::map<std::string, std::string>& target, HKEY root, const std::string& path);

/// The machine's serial ports, in byte-wise order; none when the registry does not list them.
std::vector<std::string> serial_ports();

/// The key below HKEY_LOCAL_MACHINE that lists this machine's spec files.
inline constexpr const char* spec_file_list = "SOFTWARE\\Tavrin\\TRConfig";
/// The paths of the spec files by the names of the values. Throws a text when the key cannot be read.
std::map<std::string, std::string> listed_spec_files();
