#include "protocol/stream.h"

#include "net/memory.h"
#include "protocol/heads.h"
#include "support/loopback.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::IsNull;
using testing::StartsWith;
using testing::StrEq;

struct StartedNetwork {
    StartedNetwork() { EXPECT_EQ(net_startup(), nullptr); }
};

class TcpStream : public testing::Test {
protected:
    void SetUp() override {
        socket_io_timeout = 20;
        ASSERT_THAT(stream_open(&stream, loopback::address(), listener.port(), net::connect_nonblocking),
                    IsNull());
        peer = std::make_unique<loopback::Handle>(listener.accept());
    }
    void TearDown() override {
        if (stream != nullptr)
            stream->close(stream);
        socket_io_timeout = 600;
        net::resize_memory = std::realloc;
    }
    /// What the peer receives when the stream is closed.
    std::string close_and_hear() {
        stream->close(stream);
        stream = nullptr;
        return loopback::receive_all(peer->get());
    }

    StartedNetwork before_the_listener;
    loopback::Listener listener;
    std::unique_ptr<loopback::Handle> peer;
    Stream* stream = nullptr;
};

TEST_F(TcpStream, BeginsWithNothingPending) { EXPECT_FALSE(stream->pending); }

TEST_F(TcpStream, SendsAtOnce) {
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_EQ(loopback::receive(peer->get(), 2), "ab");
    EXPECT_THAT(stream->socket_write_buf(stream, "c", 1), IsNull());
    EXPECT_EQ(close_and_hear(), "c");
}

TEST_F(TcpStream, HasWritesPendingUntilAFlush) {
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_TRUE(stream->pending);
    EXPECT_THAT(stream->socket_flush(stream), IsNull());
    EXPECT_FALSE(stream->pending);
}

TEST_F(TcpStream, HasNothingPendingAfterARead) {
    char octet = 0;
    loopback::send_all(peer->get(), "x");
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_EQ(octet, 'x');
    EXPECT_FALSE(stream->pending);
}

TEST_F(TcpStream, FlushesBeforeItReads) {
    static int flushes;
    flushes = 0;
    stream->socket_flush = [](Stream*) -> const char* {
        ++flushes;
        return "a result that nobody looks at";
    };
    char octet = 0;
    loopback::send_all(peer->get(), "xyz");
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_EQ(flushes, 0); // nothing was pending
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_EQ(flushes, 1);
    EXPECT_FALSE(stream->pending);
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_EQ(flushes, 1);
}

// Readers take octets that are at hand without a call of `read`, but not past a write.
TEST_F(TcpStream, FlushesBeforeAReaderTakesWhatIsAtHand) {
    std::uint32_t tag = 0;
    loopback::send_all(peer->get(), std::string("\x02\x04\x01", 3));
    ASSERT_TRUE(stream->wait_readable(stream, 20));
    EXPECT_THAT(read_tag(stream, &tag), IsNull());
    EXPECT_EQ(tag, BE_INTEGER);
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_TRUE(stream->pending);
    EXPECT_THAT(read_tag(stream, &tag), IsNull());
    EXPECT_EQ(tag, BE_STRING);
    EXPECT_FALSE(stream->pending);
}

TEST_F(TcpStream, FlushesWhatIsPendingWhenItCloses) {
    static int flushes;
    flushes = 0;
    stream->socket_flush = [](Stream*) -> const char* {
        ++flushes;
        return nullptr;
    };
    EXPECT_THAT(stream->socket_write_buf(stream, "ab", 2), IsNull());
    EXPECT_EQ(close_and_hear(), "ab");
    EXPECT_EQ(flushes, 1);
}

TEST_F(TcpStream, ReadsExactlyWhatIsAskedForAcrossPackets) {
    std::thread sender([this] {
        for (const char octet : std::string("abcdef"))
            loopback::send_all(peer->get(), std::string(1, octet));
    });
    char text[6] = "";
    EXPECT_THAT(stream->read(stream, text, 5), IsNull());
    EXPECT_THAT(text, StrEq("abcde"));
    EXPECT_THAT(stream->read(stream, text, 1), IsNull());
    EXPECT_EQ(text[0], 'f');
    sender.join();
}

TEST_F(TcpStream, ReadsMoreThanItKeeps) {
    std::string sent;
    for (int i = 0; i < 100'000; ++i)
        sent += static_cast<char>(i % 251);
    std::thread sender([&] { loopback::send_all(peer->get(), sent); });
    std::string heard(sent.size(), '\0');
    std::size_t count = 0;
    for (const std::size_t part : {std::size_t{1}, std::size_t{2047}, std::size_t{5000}, std::size_t{3}}) {
        EXPECT_THAT(stream->read(stream, heard.data() + count, part), IsNull());
        count += part;
    }
    EXPECT_THAT(stream->read(stream, heard.data() + count, heard.size() - count), IsNull());
    EXPECT_TRUE(heard == sent);
    sender.join();
}

TEST_F(TcpStream, HandsOutWhatIsLeftBeforeItSaysThatThePeerClosed) {
    char text[4] = "";
    loopback::send_all(peer->get(), "abc");
    peer->close();
    ASSERT_TRUE(stream->wait_readable(stream, 20));
    EXPECT_THAT(stream->read(stream, text, 1), IsNull());
    EXPECT_THAT(stream->read(stream, text + 1, 2), IsNull());
    EXPECT_THAT(text, StrEq("abc"));
    EXPECT_THAT(stream->read(stream, text, 1), StrEq("Peer closed connection unexpectedly"));
}

TEST_F(TcpStream, ReadsNothingAtOnce) { EXPECT_THAT(stream->read(stream, nullptr, 0), IsNull()); }

TEST_F(TcpStream, SaysThatThePeerClosed) {
    char text[4] = "";
    loopback::send_all(peer->get(), "abc");
    peer->close();
    EXPECT_THAT(stream->read(stream, text, 4), StrEq("Peer closed connection unexpectedly"));
}

TEST_F(TcpStream, WrapsWhatTheSocketSaysOfASilentPeer) {
    char octet = 0;
    socket_io_timeout = 1;
    EXPECT_THAT(stream->read(stream, &octet, 1), StrEq("Error receiving data: Timeout in socket_recv()"));
}

TEST_F(TcpStream, KnowsWhetherItCanRead) {
    EXPECT_FALSE(stream->wait_readable(stream, 0));
    loopback::send_all(peer->get(), "x");
    EXPECT_TRUE(stream->wait_readable(stream, 20));
}

TEST_F(TcpStream, CanReadWhatIsLeftOfASilentPeersOctets) {
    char octet = 0;
    loopback::send_all(peer->get(), "xy");
    ASSERT_TRUE(stream->wait_readable(stream, 20));
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_TRUE(stream->wait_readable(stream, 0));
    EXPECT_THAT(stream->read(stream, &octet, 1), IsNull());
    EXPECT_FALSE(stream->wait_readable(stream, 0));
}

TEST_F(TcpStream, LeavesNagleOn) {
    int no_delay = 1;
    int size = sizeof no_delay;
    ASSERT_EQ(getsockopt(stream->socket.handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<char*>(&no_delay),
                         &size),
              0);
    EXPECT_EQ(no_delay, 0);
}

TEST_F(TcpStream, HandsOnWhyItCouldNotConnect) {
    Stream* none = stream;
    EXPECT_THAT(stream_open(&none, loopback::address(), loopback::closed_port(), net::connect_nonblocking),
                AllOf(StartsWith("Error connecting: "), EndsWith(" (10061)")));
    EXPECT_THAT(none, IsNull());
}

TEST_F(TcpStream, NeedsMemory) {
    net::resize_memory = [](void*, std::size_t) -> void* { return nullptr; };
    Stream* none = stream;
    EXPECT_THAT(stream_open(&none, loopback::address(), listener.port(), net::connect_nonblocking),
                StrEq("Error allocating memory"));
    EXPECT_THAT(none, IsNull());
}

} // namespace
