#pragma once
#include "platform/win32.h"
#include "store/data_manipulator.h"

#include <string>

/// A whole registry key that the user can delete.
class DeleteRegKey : public virtual DataManipulator {
public:
    /// Checks whether the key exists. `path` is below HKEY_LOCAL_MACHINE.
    explicit DeleteRegKey(std::string path);

    void read() override;
    /// Deletes the key if that was requested. Failure is silent: the key still exists, and `changed` stays
    /// true.
    void write() override;
    bool changed() const override { return exists_ && delete_requested_; }

    /// Whether the key could be opened at the last check and was not deleted since.
    bool exists() const { return exists_; }
    bool delete_requested() const { return delete_requested_; }
    void request_delete(bool on) { delete_requested_ = on; }

private:
    std::string path_;
    bool exists_ = false;
    bool delete_requested_ = false;
};
