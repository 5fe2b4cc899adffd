#pragma once
#include "platform/win32.h"
#include "store/data_manipulator.h"

#include <string>
#include <utility>

/// One registry value, edited as text: whatever its type, it is read as raw bytes up to the first zero byte,
/// and written as REG_SZ. A missing value, and one of more than 1,024 bytes, reads as empty.
class CommonRegKey : public virtual DataManipulator {
public:
    /// `path` is relative to `root`. With `read_now` the value is read at once; otherwise it starts empty.
    CommonRegKey(HKEY root, std::string path, std::string value_name, bool read_now);

    void read() override;
    /// The key must exist already. Text beyond 1,024 bytes is not written.
    void write() override;
    bool changed() const override { return value_ != stored_value_; }

    const std::string& value() const { return value_; }
    void set_value(std::string value) { value_ = std::move(value); }

private:
    HKEY root_;
    std::string path_;
    std::string value_name_;
    std::string value_;
    std::string stored_value_;
};
