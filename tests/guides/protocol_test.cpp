// docs/protocol.md: every octet example goes through the tool's own code.
//
//   elements      octets and the value that they are; "also" before a value that is read but not written so
//   request       what other agents send, read by the sample server alone
//   conversation  what agent and server send, and the tool's result
//   datagrams     the request, answers, and what is dropped
#include "guides/guide.h"
#include "net/discovery.h"
#include "protocol/negotiation.h"
#include "protocol/values.h"
#include "support/memory_stream.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <sstream>

namespace {

using testing::AnyOf;
using testing::IsNull;

Octets octets_from(const std::string& text) { return operator""_octets(text.data(), text.size()); }

/// Where the octets of a line end: at the first word that is not two capital hexadecimal digits.
std::size_t end_of_octets(const std::string& line) {
    std::size_t end = 0;
    while (line.find_first_not_of("0123456789ABCDEF", end) == end + 2 && line[end + 2] == ' ')
        end = line.find_first_not_of(' ', end + 2);
    return end;
}

std::string read_back(const std::string& kind, Stream* stream) {
    if (kind == "integer") {
        std::int32_t number = 0;
        const auto lowest = std::numeric_limits<std::int32_t>::min();
        EXPECT_THAT(read_signed_int(stream, lowest, ~lowest, &number, 0), IsNull());
        return std::to_string(number);
    }
    if (kind == "boolean") {
        bool truth = false;
        EXPECT_THAT(read_bool(stream, &truth, 0), IsNull());
        return truth ? "true" : "false";
    }
    char* text = nullptr;
    EXPECT_THAT(read_string(stream, 1024, &text, 0), IsNull());
    const std::unique_ptr<char, void (*)(void*)> owner(text, &std::free);
    return text != nullptr ? text : "";
}

Octets written(const std::string& kind, const std::string& value) {
    MemoryStream stream;
    if (kind == "integer") {
        EXPECT_THAT(write_signed_int(&stream, -128, 65535, std::stoi(value)), IsNull());
    } else if (kind == "boolean") {
        EXPECT_THAT(write_bool(&stream, value == "true"), IsNull());
    } else {
        EXPECT_THAT(write_string(&stream, 1024, value.c_str()), IsNull());
    }
    return stream.received;
}

void check_element(const std::string& line) {
    const std::size_t end = end_of_octets(line);
    const Octets octets = octets_from(line.substr(0, end));
    std::istringstream words(line.substr(end));
    std::string kind;
    std::string value;
    words >> kind;
    const bool also = kind == "also";
    if (also)
        words >> kind;
    words >> value;
    ASSERT_THAT(kind, AnyOf("integer", "boolean", "string")) << line;
    MemoryStream stream(octets);
    EXPECT_EQ(read_back(kind, &stream), value) << line;
    EXPECT_EQ(stream.unread(), 0U) << line;
    EXPECT_EQ(written(kind, value) == octets, !also) << line;
}

void check_conversation(const Fence& fence) {
    Octets wanted;
    Octets sent;
    std::string result;
    for (const std::string& line : lines_of(fence.text)) {
        const std::string who = line.substr(0, line.find(' '));
        const std::string rest = line.substr(line.find_first_not_of(' ', who.size()));
        ASSERT_THAT(who, AnyOf("agent", "server", "result")) << line;
        if (who == "result") {
            result = rest;
        } else {
            (who == "agent" ? wanted : sent) = (who == "agent" ? wanted : sent) + octets_from(rest);
        }
    }
    MemoryStream stream(sent);
    const char* const text = negotiate(&stream, "web1", "", nullptr);
    EXPECT_EQ(text != nullptr ? text : "accepted", result) << "line " << fence.line;
    EXPECT_EQ(stream.received, wanted) << "line " << fence.line;
}

void check_datagram(const std::string& line) {
    const std::string kind = line.substr(0, line.find(' '));
    const Octets octets = octets_from(line.substr(kind.size()));
    ASSERT_THAT(kind, AnyOf("request", "answer", "dropped")) << line;
    if (kind == "request") {
        const auto request = net::discovery_request();
        EXPECT_EQ(octets, Octets(request.begin(), request.end()));
    } else {
        EXPECT_EQ(net::is_discovery_answer(octets.data(), octets.size()), kind == "answer") << line;
    }
}

TEST(ProtocolGuide, EveryExampleIsTrueOfTheTool) {
    int checked = 0;
    for (const Fence& fence : fences_of("protocol.md")) {
        ASSERT_THAT(fence.label, AnyOf("elements", "request", "conversation", "datagrams", "sh", "text"))
            << fence.line;
        if (fence.label == "sh" || fence.label == "text" || fence.label == "request")
            continue;
        ++checked;
        if (fence.label == "conversation") {
            check_conversation(fence);
            continue;
        }
        for (const std::string& line : lines_of(fence.text))
            fence.label == "elements" ? check_element(line) : check_datagram(line);
    }
    EXPECT_GT(checked, 0);
}

} // namespace
