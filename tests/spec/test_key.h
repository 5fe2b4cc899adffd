#pragma once
/// The registry key that the tests' spec files name, with the values that a test puts there.
#include "platform/win32.h"

#include <gtest/gtest.h>

#include <string>

inline const std::string test_key_path = R"(SOFTWARE\TavrinTest\Spec)";

/// The key exists and is empty when a test starts, and is gone afterwards.
class SpecKeyTest : public testing::Test {
protected:
    SpecKeyTest() {
        RegDeleteTreeA(HKEY_LOCAL_MACHINE, test_key_path.c_str());
        make_key(test_key_path);
    }
    ~SpecKeyTest() override { RegDeleteTreeA(HKEY_LOCAL_MACHINE, test_key_path.c_str()); }

    static HKEY open(const std::string& path) {
        HKEY key = nullptr;
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr);
        return key;
    }
    static void make_key(const std::string& path) { RegCloseKey(open(path)); }
    static void set_bytes(const std::string& name, DWORD type, const std::string& bytes,
                          const std::string& path = test_key_path) {
        const HKEY key = open(path);
        // The system takes a zero byte that follows a text along, even if the size leaves it out.
        const std::string data = bytes + "x";
        RegSetValueExA(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                       static_cast<DWORD>(bytes.size()));
        RegCloseKey(key);
    }
    static void set_text(const std::string& name, const std::string& text) {
        set_bytes(name, REG_SZ, text + '\0');
    }
};
