#pragma once

namespace ctl {

/// While one lives, no other tavrinctl of this machine changes values: two would each stop the service while
/// the other is writing. A file in the data folder, which no other user can hold.
class Lock {
public:
    /// Waits until no other has it. Throws Failure when that takes longer, or when the file cannot be opened.
    explicit Lock(int timeout_seconds);
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock();

private:
    void* file_;
};

} // namespace ctl
