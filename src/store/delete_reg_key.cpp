#include "store/delete_reg_key.h"

#include "store/registry_key.h"

#include <utility>

DeleteRegKey::DeleteRegKey(HKEY root, std::string path) : root_(root), path_(std::move(path)) {
    DeleteRegKey::read();
}

void DeleteRegKey::read() {
    exists_ = static_cast<bool>(RegistryKeyHandle(root_, path_, KEY_QUERY_VALUE));
    delete_requested_ = false;
}

void DeleteRegKey::write() {
    if (changed() && RegDeleteKeyA(root_, path_.c_str()) == ERROR_SUCCESS)
        exists_ = false;
}
