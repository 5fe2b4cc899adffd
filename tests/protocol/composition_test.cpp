#include "protocol/messages.h"

#include "protocol/heads.h"
#include "protocol/values.h"
#include "support/memory_stream.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

TEST(Composition, SendsAllThatWasWrittenAtOnce) {
    Composition message;
    EXPECT_THAT(write_tag(message.stream(), 248), IsNull());
    EXPECT_THAT(write_length(message.stream(), 200), IsNull());
    EXPECT_THAT(write_indefinite(message.stream()), IsNull());
    EXPECT_THAT(write_signed_int(message.stream(), 0, 65535, 514), IsNull());
    EXPECT_THAT(write_bool(message.stream(), true), IsNull());
    EXPECT_THAT(write_string(message.stream(), 4, "web1"), IsNull());
    EXPECT_THAT(write_string(message.stream(), 200, std::string(200, 'd').c_str()), IsNull());
    EXPECT_THAT(write_end_of_contents(message.stream()), IsNull());
    MemoryStream connection;
    EXPECT_THAT(message.send_over(&connection), IsNull());
    EXPECT_EQ(connection.received, "1F 1F 81 C8 80 02 02 02 02 01 01 01 04 04 77 65 62 31 04 81 C8"_octets +
                                       Octets(200, 'd') + "00 00"_octets);
    EXPECT_EQ(connection.writes, 1);
}

TEST(Composition, KeepsWhatStandsBeforeARefusedText) {
    Composition message;
    EXPECT_THAT(write_client_wants(message.stream(), 514, std::string(257, 'n').c_str(), ""),
                StrEq("client_private_key.name: data out of range in write_string"));
    MemoryStream connection;
    EXPECT_THAT(message.send_over(&connection), IsNull());
    EXPECT_EQ(connection.received, "60 80 02 02 02 02 A1 80 04"_octets);
}

TEST(Composition, HandsOnTheConnectionsFailure) {
    Composition message;
    EXPECT_THAT(write_closing(message.stream()), IsNull());
    MemoryStream connection;
    connection.break_after(3, "gone");
    EXPECT_THAT(message.send_over(&connection), StrEq("gone"));
}

TEST(Composition, HasRoomForTheLongestRequestAndNoMore) {
    Composition message;
    EXPECT_THAT(write_client_wants(message.stream(), 514, std::string(256, 'n').c_str(),
                                   std::string(1024, 'd').c_str()),
                IsNull());
    EXPECT_THAT(write_bool(message.stream(), true), StrEq("Message is longer than any message"));
    MemoryStream connection;
    EXPECT_THAT(message.send_over(&connection), IsNull());
    EXPECT_EQ(connection.received.size(), 1311u);
}

} // namespace
