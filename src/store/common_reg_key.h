#pragma once
#include "platform/win32.h"
#include "store/data_manipulator.h"

#include <memory>
#include <string>
#include <string_view>

/// One registry value, edited as text: whatever its type, it is read as raw bytes up to the first zero byte,
/// and written as REG_SZ. A missing value, and one of more than 1,024 bytes, reads as empty.
class CommonRegKey : public virtual DataManipulator {
public:
    /// `path` is below HKEY_LOCAL_MACHINE. With `read_now` the value is read at once; otherwise it starts
    /// empty. The two texts must outlive this object. They are not copied because a configuration has many of
    /// these.
    CommonRegKey(const std::string& path, std::string_view value_name, bool read_now);
    CommonRegKey(std::string&& path, std::string_view value_name, bool read_now) = delete;

    void read() override;
    /// The key must exist already. Text beyond 1,024 bytes is not written.
    void write() override;
    bool changed() const override { return stored_value_ && *stored_value_ != value_; }

    const std::string& value() const { return value_; }
    void set_value(std::string value);

private:
    const std::string* path_;
    std::string_view value_name_;
    std::string value_;
    std::unique_ptr<std::string> stored_value_; // null while it equals the current value
};
