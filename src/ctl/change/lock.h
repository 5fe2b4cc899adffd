#pragma once

namespace ctl {

/// While it exists, no other tavrinctl on this machine changes values: two would each stop the service while
/// the other is writing. The lock is a file in the data folder, which no other user can hold.
class Lock {
public:
    /// Waits for it. Throws Failure if that takes too long, or if the file cannot be opened.
    explicit Lock(int timeout_seconds);
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock();

private:
    void* file_;
};

} // namespace ctl
