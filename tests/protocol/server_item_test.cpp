#include "protocol/server_item.h"

#include "error/exceptions.h"

#include <gtest/gtest.h>

namespace {

struct Item {
    const char* text;
    const char* host;
    std::optional<std::string> port_text;
};

TEST(ServerItem, IsSplitAtItsFirstColon) {
    const Item items[] = {{"alpha", "alpha", std::nullopt},
                          {"", "", std::nullopt},
                          {"10.0.0.7:5000", "10.0.0.7", "5000"},
                          {"alpha:", "alpha", ""},
                          {":80", "", "80"},
                          {":", "", ""},
                          {"a:b:c", "a", "b:c"},
                          {" alpha : 80 ", " alpha ", " 80 "}};
    for (const Item& each : items) {
        const ServerItem item = split_server_item(each.text);
        EXPECT_EQ(item.host, each.host) << each.text;
        EXPECT_EQ(item.port_text, each.port_text) << each.text;
    }
}

TEST(ServerPort, IsTheDefaultWithoutAColon) {
    EXPECT_EQ(server_port({"alpha", std::nullopt}, 5000), 5000);
    EXPECT_EQ(server_port({"alpha", std::nullopt}, 65535), 65535);
}

TEST(ServerPort, IsTheLowSixteenBitsOfItsText) {
    const std::pair<const char*, std::uint16_t> ports[] = {
        {"", 0},       {"0", 0},      {"80", 80},       {"+80", 80},  {" \t80", 80}, {"0080", 80},
        {"-1", 65535}, {"-2", 65534}, {"65535", 65535}, {"65536", 0}, {"65537", 1},  {"-65535", 1}};
    for (const auto& [text, port] : ports)
        EXPECT_EQ(server_port({"alpha", text}, 5000), port) << text;
}

TEST(ServerPort, ThrowsForATextThatIsNoNumber) {
    for (const char* text : {"x", "80x", "80 ", " ", "-", "0x50", "8.0", "80:90", "\xB2"})
        EXPECT_THROW(server_port({"alpha", text}, 5000), error::EParseError) << text;
}

} // namespace
