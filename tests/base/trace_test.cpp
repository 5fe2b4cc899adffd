#include "base/trace.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

std::vector<std::string> heard;

void listen(const char* format, std::va_list arguments) {
    char text[64];
    std::vsnprintf(text, sizeof text, format, arguments);
    heard.emplace_back(text);
}

TEST(Trace, IsHeardByItsListenerOnly) {
    trace("Reading %s\n", "nobody");
    trace_listener = listen;
    trace("Reading new file\n");
    trace("Found agent_name_title: %s\n", "Agent name");
    trace_listener = nullptr;
    trace("Reading %s\n", "nobody");
    EXPECT_THAT(heard, ElementsAre("Reading new file\n", "Found agent_name_title: Agent name\n"));
}

} // namespace
