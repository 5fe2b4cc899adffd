#include "app/test_connection.h"

#include "net/memory.h"
#include "net/socket.h"
#include "protocol/stream.h"
#include "support/boxes.h"
#include "support/conversation.h"
#include "support/loopback.h"
#include "support/system.h"
#include "support/user.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <future>
#include <mutex>
#include <tuple>

namespace {

using loopback::Handle;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

const std::string acceptance = text_of(conversation::offer);
const std::string refusal_no = text_of(conversation::refusal);
const std::string refusal_later = text_of("63 80 04 05 6C 61 74 65 72 00 00"_octets);

const char success[] =
    "All the Tavrin Servers accepted the settings. The Tavrin Agent will now be able to check in, "
    "once started";

std::vector<HWND> wait_windows() { return own_windows("tavrin_service_win"); }

/// The text of the wait window during each attempt to connect, and the largest number of such windows.
std::vector<std::string> waits;
std::size_t most_wait_windows;
/// An attempt begins by getting memory for its stream.
void* note_wait_and_resize(void* block, std::size_t size) {
    if (size > sizeof(Stream)) { // the record, with the octets that it keeps
        char text[512] = "";
        const std::vector<HWND> shown = wait_windows();
        GetWindowTextA(GetDlgItem(shown.empty() ? nullptr : shown.front(), 106), text, sizeof text);
        waits.emplace_back(text);
        most_wait_windows = std::max(most_wait_windows, shown.size());
    }
    return std::realloc(block, size);
}

class ConnectionTest : public CleanSystem {
protected:
    void SetUp() override {
        ASSERT_EQ(net_startup(), nullptr);
        socket_io_timeout = 20;
        net::resize_memory = note_wait_and_resize;
        most_wait_windows = 0;
    }
    void TearDown() override {
        EXPECT_THAT(wait_windows(), IsEmpty());
        net::resize_memory = std::realloc;
        socket_io_timeout = 600;
    }

    /// A server that notes its name, answers, and stays until the agent closes.
    std::unique_ptr<loopback::Peer> server(const std::string& name, const std::string& answer) {
        return std::make_unique<loopback::Peer>([this, name, answer](Handle& agent) {
            loopback::send_all(agent.get(), answer);
            const std::string octets = loopback::receive_all(agent.get());
            const std::lock_guard guard(mutex);
            contacted.push_back(name);
            heard = octets;
        });
    }
    /// Runs the test, which shows exactly one box.
    SeenBox box_of(const std::string& server_list, std::uint16_t default_port = 1) {
        Boxes boxes;
        waits.clear();
        testConnection("web1", "", server_list, default_port);
        EXPECT_EQ(boxes.seen().size(), 1u);
        return boxes.seen().empty() ? SeenBox() : boxes.seen().front();
    }

    std::mutex mutex;
    std::vector<std::string> contacted;
    std::string heard;
};

std::string item(const loopback::Peer& peer) { return "127.0.0.1:" + std::to_string(peer.port()); }
std::string shown(std::uint16_t port) { return std::to_string(static_cast<std::int16_t>(port)); }

std::string failure(const std::string& host, const std::string& port, const std::string& reason) {
    return "The connection to the server \"" + host + "\" at port " + port + " failed. The reason was:\n\n" +
           reason;
}

std::string waiting_for(const std::string& host, const std::string& port) {
    return "Testing connection to server \"" + host + "\" at port " + port + ". Please be patient.";
}

void expect_accepted(const SeenBox& box) {
    EXPECT_EQ(box.text, success);
    EXPECT_EQ(box.caption, "Connection test successful");
    EXPECT_EQ(box.style, static_cast<UINT>(MB_ICONINFORMATION));
    EXPECT_EQ(box.owner, nullptr);
}

void expect_warning(const SeenBox& box) {
    EXPECT_EQ(box.caption, "Error testing connection");
    EXPECT_EQ(box.style, static_cast<UINT>(MB_ICONEXCLAMATION));
    EXPECT_EQ(box.owner, nullptr);
}

TEST_F(ConnectionTest, OfNoServersIsASuccess) {
    for (const char* list : {"", ",", ",,,"}) {
        expect_accepted(box_of(list));
        EXPECT_THAT(waits, IsEmpty());
    }
}

TEST_F(ConnectionTest, TellsThatTheServerAccepted) {
    const auto alpha = server("alpha", acceptance);
    expect_accepted(box_of(item(*alpha)));
    alpha->finish();
    EXPECT_THAT(waits, ElementsAre(waiting_for("127.0.0.1", shown(alpha->port()))));
    EXPECT_EQ(heard, text_of(conversation::request + conversation::closing));
}

TEST_F(ConnectionTest, HandsOnNameAndDomain) {
    const auto alpha = server("alpha", acceptance);
    Boxes boxes;
    testConnection("", "x", item(*alpha), 1);
    alpha->finish();
    EXPECT_EQ(heard, text_of("60 80 02 02 02 02 A1 80 04 09 31 32 37 2E 30 2E 30 2E 31 04 01 78 04 00 "
                             "01 01 01 01 01 01 01 01 01 00 00 00 00 62 80 00 00"_octets));
}

TEST_F(ConnectionTest, TriesEveryServerInTurn) {
    const auto alpha = server("alpha", acceptance);
    const auto beta = server("beta", refusal_no);
    const auto gamma = server("gamma", acceptance);
    const SeenBox box = box_of(",," + item(*alpha) + "," + item(*beta) + ",," + item(*gamma) + ",");
    for (const auto* peer : {&alpha, &beta, &gamma})
        (*peer)->finish();
    expect_warning(box);
    EXPECT_EQ(box.text, failure("127.0.0.1", shown(beta->port()), "Tavrin Server rejected us: no"));
    std::sort(contacted.begin(), contacted.end()); // a server notes its name once the agent has left
    EXPECT_THAT(contacted, ElementsAre("alpha", "beta", "gamma"));
    EXPECT_EQ(waits.size(), 3u);
}

TEST_F(ConnectionTest, OfAHundredServersLeavesNoPileOfWaitWindows) {
    loopback::Listener listener;
    auto servers = std::async(std::launch::async, [&listener] {
        for (int server = 0; server < 100; ++server)
            listener.accept();
    });
    std::string list;
    for (int server = 0; server < 100; ++server)
        list += "127.0.0.1:" + std::to_string(listener.port()) + ",";
    std::vector<HWND> behind_the_box = {nullptr};
    Boxes boxes;
    boxes.while_shown([&] { behind_the_box = wait_windows(); });
    waits.clear();
    testConnection("web1", "", list, 1);
    servers.get();
    EXPECT_EQ(waits.size(), 100u);
    EXPECT_EQ(most_wait_windows, 1u);
    EXPECT_THAT(behind_the_box, IsEmpty());
}

TEST_F(ConnectionTest, ListsEveryFailureWithItsOwnReason) {
    const auto alpha = server("alpha", refusal_no);
    const auto beta = server("beta", "HTTP/1.1 400 Bad Request\r\n\r\n");
    const auto gamma = server("gamma", refusal_later);
    const SeenBox box = box_of(item(*gamma) + "," + item(*beta) + "," + item(*alpha));
    expect_warning(box);
    EXPECT_EQ(box.text,
              failure("127.0.0.1", shown(gamma->port()), "Tavrin Server rejected us: later") + "\n\n" +
                  failure("127.0.0.1", shown(beta->port()), "Tavrin Server using incompatible protocol") +
                  "\n\n" + failure("127.0.0.1", shown(alpha->port()), "Tavrin Server rejected us: no"));
    EXPECT_THAT(waits, ElementsAre(waiting_for("127.0.0.1", shown(gamma->port())),
                                   waiting_for("127.0.0.1", shown(beta->port())),
                                   waiting_for("127.0.0.1", shown(alpha->port()))));
}

TEST_F(ConnectionTest, SaysThatNobodyListens) {
    const std::uint16_t port = loopback::closed_port();
    const SeenBox box = box_of("127.0.0.1:" + std::to_string(port));
    expect_warning(box);
    EXPECT_THAT(box.text, AllOf(StartsWith(failure("127.0.0.1", shown(port), "Error connecting: ")),
                                EndsWith(" (10061)")));
}

TEST_F(ConnectionTest, ShowsPortsAsSignedNumbers) {
    const std::pair<const char*, const char*> ports[] = {
        {"65535", "-1"}, {"-1", "-1"}, {"131071", "-1"}, {"65536", "0"}, {"-65536", "0"}};
    for (const auto& [port, text] : ports) {
        const SeenBox box = box_of(std::string("127.0.0.1:") + port);
        EXPECT_THAT(box.text, StartsWith(failure("127.0.0.1", text, "Error connecting: "))) << port;
        EXPECT_THAT(waits, ElementsAre(waiting_for("127.0.0.1", text)));
    }
}

TEST_F(ConnectionTest, StopsAtAPortThatIsNoNumber) {
    const std::tuple<const char*, const char*, const char*> items[] = {
        {"a:80:90,127.0.0.1", "a", "80:90"}, {":x", "", "x"}, {"a: ", "a", " "}};
    for (const auto& [list, host, port_text] : items) {
        const SeenBox box = box_of(list);
        expect_warning(box);
        EXPECT_EQ(box.text, std::string("The server port \"") + port_text + "\" for the server \"" + host +
                                "\" cannot be parsed as a number. Please correct this before testing the "
                                "connection.");
        EXPECT_THAT(waits, IsEmpty());
    }
}

TEST_F(ConnectionTest, HasTriedTheServersBeforeABadPort) {
    const auto alpha = server("alpha", acceptance);
    const auto beta = server("beta", refusal_no);
    const SeenBox box = box_of(item(*alpha) + "," + item(*beta) + ",b:x");
    alpha->finish();
    beta->finish();
    expect_warning(box);
    EXPECT_EQ(box.text,
              "The server port \"x\" for the server \"b\" cannot be parsed as a number. Please correct this "
              "before testing the connection.");
    EXPECT_EQ(contacted.size(), 2u);
    EXPECT_EQ(waits.size(), 2u);
}

TEST_F(ConnectionTest, KeepsNothingForTheNextRun) {
    EXPECT_THAT(box_of("127.0.0.1:").text,
                StartsWith("The connection to the server \"127.0.0.1\" at port 0"));
    expect_accepted(box_of(""));
}

} // namespace
