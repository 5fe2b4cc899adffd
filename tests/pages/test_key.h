#pragma once
/// Tests over the registry key that their spec files name; it exists and is empty when a test starts.
#include "support/registry.h"
#include "support/system.h"

#include <string>

class SpecKeyTest : public CleanSystem {
protected:
    SpecKeyTest() { make_key(test_key); }

    static void set_bytes(const std::string& name, DWORD type, const std::string& bytes) {
        set_value(test_key, name, type, bytes);
    }
    static void set_text(const std::string& name, const std::string& text) {
        ::set_text(test_key, name, text);
    }
};
