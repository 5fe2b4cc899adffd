#pragma once
/// Servers that answer a scan, on 127.0.0.1 and its neighbours.
#include "support/loopback.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace loopback {

/// A server's answer to a scan, sent from 127.0.0.`host`.
struct Answer {
    unsigned host;
    std::string octets;
};

/// A good answer of the shortest length.
std::string discovery_answer();

/// Receives the requests at one port and lets other hosts of the loopback network answer each of them.
class DiscoveryServer {
public:
    using Answers = std::function<std::vector<Answer>(int request)>;
    enum Manner { ordinary, hears_broadcasts, never_stops_answering };
    /// `answers` is asked on each request, which are counted from 1.
    explicit DiscoveryServer(Answers answers, Manner manner = ordinary);
    DiscoveryServer(const DiscoveryServer&) = delete;
    DiscoveryServer& operator=(const DiscoveryServer&) = delete;
    ~DiscoveryServer();
    std::uint16_t port() const { return port_; }
    /// The requests received so far.
    std::vector<std::string> requests();

private:
    bool has_answered(std::size_t requests);
    void serve();
    void answer(const sockaddr_in& scanner, int request);
    SOCKET socket_of(unsigned host);

    Answers answers_;
    Manner manner_;
    Handle handle_;
    std::uint16_t port_;
    std::map<unsigned, Handle> hosts_;
    std::mutex guard_;
    std::condition_variable answered_one_;
    std::size_t answered_ = 0;
    std::vector<std::string> requests_;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

} // namespace loopback
