#pragma once
#include <chrono>
#include <functional>

namespace ctl {

/// While one lives, the network layer bears with a server no longer than a limit for the whole attempt: the
/// look-up of its name, the connection and every answer together.
class BoundedNetwork {
public:
    BoundedNetwork();
    BoundedNetwork(const BoundedNetwork&) = delete;
    BoundedNetwork& operator=(const BoundedNetwork&) = delete;
    ~BoundedNetwork();

    /// An attempt begins.
    static void begin(std::chrono::seconds limit);
};

/// Runs `work` in a thread of its own and waits for it. False when it takes longer than `limit`: the thread
/// is then left behind, so `work` has to own what it uses.
bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work);

/// The time since some moment, never set back.
std::chrono::milliseconds uptime();

} // namespace ctl
