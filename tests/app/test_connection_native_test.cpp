#include "app/test_connection.h"
#include "base/messages.h"
#include "net/socket.h"
#include "substitute/control.h"
#include "support/boxes.h"
#include "support/loopback.h"
#include "support/user.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::ElementsAre;

class ConnectionTestCalls : public testing::Test {
protected:
    ConnectionTestCalls() { substitute::reset(); }
    ~ConnectionTestCalls() override { substitute::reset(); }

    std::vector<std::string> texts_of(const std::string& server_list) {
        Boxes boxes;
        testConnection("web1", "", server_list, 5000);
        std::vector<std::string> texts;
        for (const SeenBox& box : boxes.seen())
            texts.push_back(box.text);
        return texts;
    }
    /// Those of all calls whose names are among `names`, in order.
    static std::vector<std::string> calls_of(const std::vector<std::string>& names) {
        std::vector<std::string> calls = substitute::calls();
        std::erase_if(calls, [&](const std::string& call) {
            return std::find(names.begin(), names.end(), call) == names.end();
        });
        return calls;
    }
};

std::string failure(const std::string& host, const std::string& port, const std::string& reason) {
    return "The connection to the server \"" + host + "\" at port " + port + " failed. The reason was:\n\n" +
           reason;
}

TEST_F(ConnectionTestCalls, LooksABlankUpAsPartOfTheHost) {
    substitute::set_host(" alpha", {});
    substitute::set_host("alpha ", {});
    EXPECT_THAT(texts_of(" alpha,alpha :80"),
                ElementsAre(failure(" alpha", "5000", "No addresses found when resolving \" alpha\"") +
                            "\n\n" +
                            failure("alpha ", "80", "No addresses found when resolving \"alpha \"")));
}

TEST_F(ConnectionTestCalls, ConnectsToWhatANameStandsFor) {
    loopback::Peer peer([](loopback::Handle& agent) {
        loopback::send_all(agent.get(), "\x04");
        loopback::receive_all(agent.get());
    });
    substitute::set_host("alpha", {loopback::address()});
    EXPECT_THAT(texts_of("alpha:" + std::to_string(peer.port())),
                ElementsAre(failure("alpha", std::to_string(static_cast<std::int16_t>(peer.port())),
                                    "Tavrin Server using incompatible protocol")));
}

TEST_F(ConnectionTestCalls, LooksNothingUpForNoServers) {
    texts_of("");
    texts_of(",,");
    texts_of("a:x,b");
    EXPECT_EQ(substitute::call_count("gethostbyname"), 0);
    EXPECT_EQ(substitute::call_count("socket"), 0);
}

TEST_F(ConnectionTestCalls, OpensAndClosesAWindowAroundEveryAttempt) {
    substitute::set_host("a", {});
    substitute::set_host("b", {});
    texts_of("a,b");
    EXPECT_THAT(calls_of({"UpdateWindow", "gethostbyname", "PostMessageA", "MessageBoxA"}),
                ElementsAre("UpdateWindow", "gethostbyname", "PostMessageA", "UpdateWindow", "gethostbyname",
                            "PostMessageA", "MessageBoxA"));
}

TEST_F(ConnectionTestCalls, GoesOnWithoutItsWindow) {
    substitute::set_host("a", {});
    substitute::fail_call("CreateWindowExA");
    EXPECT_THAT(texts_of("a"), ElementsAre("Error creating service window!",
                                           failure("a", "5000", "No addresses found when resolving \"a\"")));
    EXPECT_EQ(substitute::call_count("PostMessageA"), 0);
}

} // namespace
