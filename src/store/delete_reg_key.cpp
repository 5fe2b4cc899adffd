#include "store/delete_reg_key.h"

#include "store/registry_key.h"

#include <utility>

DeleteRegKey::DeleteRegKey(std::string path) : path_(std::move(path)) { DeleteRegKey::read(); }

void DeleteRegKey::read() {
    exists_ = static_cast<bool>(RegistryKeyHandle(HKEY_LOCAL_MACHINE, path_, KEY_QUERY_VALUE));
    delete_requested_ = false;
}

void DeleteRegKey::write() {
    if (changed() && RegDeleteKeyA(HKEY_LOCAL_MACHINE, path_.c_str()) == ERROR_SUCCESS)
        exists_ = false;
}
