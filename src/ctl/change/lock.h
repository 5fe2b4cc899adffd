#pragma once

namespace ctl {

/// While one lives, no other tavrinctl of this machine changes values: two would each stop the service under
/// the other's hands.
class OneAtATime {
public:
    /// Waits for its turn. Throws Failure when it does not come in time.
    explicit OneAtATime(int timeout_seconds);
    OneAtATime(const OneAtATime&) = delete;
    OneAtATime& operator=(const OneAtATime&) = delete;
    ~OneAtATime();

private:
    void* turn_;
};

} // namespace ctl
