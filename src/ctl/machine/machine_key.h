#pragma once
#include "store/registry_key.h"

#include <string>

namespace ctl {

/// A key below HKEY_LOCAL_MACHINE, open. The path is in the machine's code page.
class MachineKey {
public:
    /// Throws Failure: `access_denied`, `invalid` for a key that does not exist, with the text `if_missing`,
    /// `failed` for all else.
    MachineKey(const std::string& path, REGSAM access, const std::string& if_missing = {});

    HKEY get() const { return key_.get(); }

private:
    RegistryKeyHandle key_;
};

} // namespace ctl
