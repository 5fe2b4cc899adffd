#include "net/udp.h"

#include "support/loopback.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using testing::StrEq;

/// A socket of the program's and one of a peer's.
class Datagrams : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(net_startup(), nullptr);
        ASSERT_TRUE(udp_open(&socket_));
        peer_.reset(socket(AF_INET, SOCK_DGRAM, 0));
        sockaddr_in own = loopback::endpoint(loopback::address(), 0);
        ASSERT_EQ(bind(peer_.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
        int size = sizeof own;
        ASSERT_EQ(getsockname(peer_.get(), reinterpret_cast<sockaddr*>(&own), &size), 0);
        peer_port_ = ntohs(own.sin_port);
    }
    void TearDown() override { udp_close(socket_); }

    const char* send(const std::string& octets) {
        return udp_send_to(socket_, loopback::address(), peer_port_, octets.data(), octets.size());
    }
    /// Has the peer send `octets` to the program's socket.
    void answer(const std::string& octets) {
        EXPECT_EQ(send("?"), nullptr);
        char question = 0;
        sockaddr_in program{};
        int size = sizeof program;
        ASSERT_TRUE(loopback::readable(peer_.get()));
        ASSERT_EQ(recvfrom(peer_.get(), &question, 1, 0, reinterpret_cast<sockaddr*>(&program), &size), 1);
        ASSERT_EQ(sendto(peer_.get(), octets.data(), static_cast<int>(octets.size()), 0,
                         reinterpret_cast<const sockaddr*>(&program), size),
                  static_cast<int>(octets.size()));
        ASSERT_TRUE(socket_wait_readable(socket_, 30));
    }
    const char* receive(std::size_t capacity) {
        octets_.assign(capacity, '?');
        std::size_t length = capacity;
        const char* message = udp_receive_from(socket_, &sender_, &sender_port_, octets_.data(), &length);
        octets_.resize(length);
        return message;
    }

    Socket socket_;
    loopback::Handle peer_;
    std::uint16_t peer_port_ = 0;
    std::uint32_t sender_ = 0;
    std::uint16_t sender_port_ = 0;
    std::string octets_;
};

TEST_F(Datagrams, AreSent) {
    EXPECT_EQ(send("twelve bytes"), nullptr);
    EXPECT_EQ(loopback::receive(peer_.get(), 12), "twelve bytes");
}

TEST_F(Datagrams, AreReceivedWithTheirSender) {
    answer("hello");
    EXPECT_EQ(receive(100), nullptr);
    EXPECT_EQ(octets_, "hello");
    EXPECT_EQ(sender_, loopback::address());
    EXPECT_EQ(sender_port_, peer_port_);
}

TEST_F(Datagrams, MayFillTheBuffer) {
    answer("12345678");
    EXPECT_EQ(receive(8), nullptr);
    EXPECT_EQ(octets_, "12345678");
}

TEST_F(Datagrams, ThatDoNotFitAreAFailure) {
    answer("123456789");
    EXPECT_THAT(receive(8), StrEq("UDP receive failed (10040)"));
}

TEST_F(Datagrams, MayBeEmpty) {
    answer("");
    EXPECT_EQ(receive(8), nullptr);
    EXPECT_EQ(octets_, "");
}

TEST_F(Datagrams, AreNotReceivedOnNoSocket) {
    Socket none;
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    char octet = 0;
    std::size_t length = 1;
    EXPECT_THAT(udp_receive_from(none, &address, &port, &octet, &length),
                StrEq("UDP receive failed (10038)"));
}

TEST_F(Datagrams, AreNotSentOnNoSocket) {
    Socket none;
    EXPECT_THAT(udp_send_to(none, loopback::address(), 9, "a", 1), StrEq("UDP send failed error code 10038"));
}

TEST_F(Datagrams, AreBroadcastOnlyWhenThatIsAllowed) {
    const std::uint32_t everybody = htonl(0x7FFFFFFF);
    EXPECT_THAT(udp_send_to(socket_, everybody, peer_port_, "a", 1),
                StrEq("UDP send failed error code 10013"));
    EXPECT_EQ(udp_enable_broadcast(socket_, true), nullptr);
    EXPECT_EQ(udp_send_to(socket_, everybody, peer_port_, "a", 1), nullptr);
    EXPECT_EQ(udp_enable_broadcast(socket_, false), nullptr);
    EXPECT_THAT(udp_send_to(socket_, everybody, peer_port_, "a", 1),
                StrEq("UDP send failed error code 10013"));
}

TEST_F(Datagrams, TellWithTheWordingForReceivingThatBroadcastsAreRefused) {
    Socket none;
    EXPECT_THAT(udp_enable_broadcast(none, true), StrEq("UDP receive failed"));
}

TEST_F(Datagrams, LeaveTheMessagesOfEarlierFailuresAlone) {
    Socket none;
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    std::size_t length = 0;
    const char* sending = udp_send_to(none, loopback::address(), 9, "a", 1);
    const char* allowing = udp_enable_broadcast(none, true);
    const char* receiving = udp_receive_from(none, &address, &port, nullptr, &length);
    EXPECT_THAT(sending, StrEq("UDP send failed error code 10038"));
    EXPECT_THAT(allowing, StrEq("UDP receive failed"));
    EXPECT_THAT(receiving, StrEq("UDP receive failed (10038)"));
}

TEST_F(Datagrams, EndWithTheirSocket) {
    EXPECT_TRUE(udp_close(socket_));
    EXPECT_FALSE(udp_close(socket_));
    EXPECT_THAT(send("a"), StrEq("UDP send failed error code 10038"));
}

TEST_F(Datagrams, CannotCloseWhatIsNoSocket) {
    Socket stranger;
    stranger.handle = socket_.handle;
    EXPECT_TRUE(udp_close(socket_));
    EXPECT_FALSE(udp_close(stranger));
}

} // namespace
