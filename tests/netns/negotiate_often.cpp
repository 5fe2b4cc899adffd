/// Negotiates with one server again and again and prints how often each end was reached, a line each: the
/// count and what the agent would be told, "accepted" or a text.
/// usage: negotiate_often ADDRESS PORT TIMES
#include "net/socket.h"
#include "protocol/negotiation.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {

int report(const char* message) {
    std::printf("failed: %s\n", message);
    return 1;
}

std::string end_of_one(const char* address, std::uint16_t port) {
    const char* text = connect_and_negotiate(address, port, "web1", "", nullptr, nullptr);
    return text != nullptr ? text : "accepted";
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4)
        return report("usage: negotiate_often ADDRESS PORT TIMES");
    if (const char* message = net_startup())
        return report(message);
    std::map<std::string, int> ends;
    for (int times = std::atoi(arguments[3]); times > 0; --times)
        ++ends[end_of_one(arguments[1], static_cast<std::uint16_t>(std::atoi(arguments[2])))];
    for (const auto& [end, times] : ends)
        std::printf("%d %s\n", times, end.c_str());
    std::printf("end\n");
    return 0;
}
