#include "ctl/verbs/bounded_network.h"

#include <future>
#include <memory>
#include <thread>
#include <utility>

namespace ctl {

bool finishes_within(std::chrono::milliseconds limit, std::function<void()> work) {
    const auto done = std::make_shared<std::promise<void>>();
    const std::future<void> end = done->get_future();
    std::thread([done, own = std::move(work)] {
        own();
        done->set_value();
    }).detach();
    return end.wait_for(limit) == std::future_status::ready;
}

std::chrono::milliseconds uptime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace ctl
