#pragma once
#include "platform/substitute/control.h"

#include <string>

/// The key below HKEY_LOCAL_MACHINE that the benchmarks' spec files name.
inline const std::string kAgentKey = "SOFTWARE\\Vendor\\Agent";

/// A registry with that key and its one value "Value", "4711".
inline void prepare_registry() {
    substitute::reset();
    substitute::record_calls(false);
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, kAgentKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                    KEY_ALL_ACCESS, nullptr, &key, nullptr);
    RegSetValueExA(key, "Value", 0, REG_SZ, reinterpret_cast<const BYTE*>("4711"), 5);
    RegCloseKey(key);
}
