#pragma once
#include "platform/win32.h"

#include <string>

/// An open registry key; closes itself. False when it could not be opened.
class RegistryKeyHandle {
public:
    RegistryKeyHandle(HKEY root, const std::string& path, REGSAM access) {
        if (RegOpenKeyExA(root, path.c_str(), 0, access, &key_) != ERROR_SUCCESS)
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

private:
    HKEY key_ = nullptr;
};
