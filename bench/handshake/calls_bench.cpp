// Counts the system calls of a connection test for one server, as the median of several tests: if the server
// has not answered yet, there is one more receive. usage: calls_bench RESULT_FILE PORT (bench/answering
// listens)
#include "net/socket.h"
#include "protocol/negotiation.h"
#include "substitute/control/calls.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

constexpr int tests = 99;

struct Counted {
    const char* work;
    const char* function;
    std::string values;
};

bool count_one(std::uint16_t port, Counted& counted) {
    substitute::reset();
    if (const char* problem =
            connect_and_negotiate("127.0.0.1", port, "web1", "example.org", nullptr, nullptr)) {
        std::fprintf(stderr, "calls_bench: %s\n", problem);
        return false;
    }
    counted.values +=
        (counted.values.empty() ? "" : ", ") + std::to_string(substitute::call_count(counted.function));
    return true;
}

std::string sample(const Counted& counted) {
    return R"({"name": ")" + std::string(counted.work) + R"(/tavrinconfig", "unit": "calls", "values": [)" +
           counted.values + "]}";
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3 || net_startup() != nullptr)
        return 2;
    const auto port = static_cast<std::uint16_t>(std::atoi(arguments[2]));
    Counted sends{"sends of a handshake", "send", ""};
    Counted receives{"receives of a handshake", "recv", ""};
    for (int test = 0; test < tests; ++test) {
        if (!count_one(port, sends) || !count_one(port, receives))
            return 1;
    }
    std::ofstream file(arguments[1]);
    file << "{\"samples\": [" << sample(sends) << ", " << sample(receives) << "]}\n";
    return file.flush() ? 0 : 1;
}
