#include "protocol/messages.h"

#include "support/memory_stream.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using testing::IsNull;
using testing::StrEq;

TEST(ClientWants, IsTheOctetsOfAnAgent) {
    MemoryStream stream;
    EXPECT_THAT(write_client_wants(&stream, 514, "web1", ""), IsNull());
    EXPECT_EQ(stream.received, "60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 00 04 00 "
                               "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets);
}

TEST(ClientWants, HoldsTheDomain) {
    MemoryStream stream;
    EXPECT_THAT(write_client_wants(&stream, 514, "a", "b.example"), IsNull());
    EXPECT_EQ(stream.received, "60 80 02 02 02 02 A1 80 04 01 61 04 09 62 2E 65 78 61 6D 70 6C 65 04 00 "
                               "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets);
}

TEST(ClientWants, HoldsAbsentTextsAsEmptyOnes) {
    MemoryStream stream;
    EXPECT_THAT(write_client_wants(&stream, 514, nullptr, nullptr), IsNull());
    EXPECT_EQ(stream.received, "60 80 02 02 02 02 A1 80 04 00 04 00 04 00 "
                               "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets);
}

TEST(ClientWants, HoldsTheLongestTexts) {
    MemoryStream stream;
    EXPECT_THAT(
        write_client_wants(&stream, 514, std::string(256, 'n').c_str(), std::string(1024, 'd').c_str()),
        IsNull());
    EXPECT_EQ(stream.received, "60 80 02 02 02 02 A1 80 04 82 01 00"_octets + Octets(256, 'n') +
                                   "04 82 04 00"_octets + Octets(1024, 'd') +
                                   "04 00 01 01 01 01 01 01 01 01 01 00 00 00 00"_octets);
}

TEST(ClientWants, BreaksOffAtATextThatIsTooLong) {
    MemoryStream name;
    EXPECT_THAT(write_client_wants(&name, 514, std::string(257, 'n').c_str(), ""),
                StrEq("client_private_key.name: data out of range in write_string"));
    EXPECT_EQ(name.received, "60 80 02 02 02 02 A1 80 04"_octets);
    MemoryStream domain;
    EXPECT_THAT(write_client_wants(&domain, 514, "a", std::string(1025, 'd').c_str()),
                StrEq("client_private_key.domain: data out of range in write_string"));
    EXPECT_EQ(domain.received, "60 80 02 02 02 02 A1 80 04 01 61 04"_octets);
}

TEST(ClientWants, RefusesAVersionThatIsOutOfRange) {
    for (const std::int32_t version : {-1, 65536}) {
        MemoryStream stream;
        EXPECT_THAT(write_client_wants(&stream, version, "a", "b"),
                    StrEq("client_wants.version: data out of range in write_signed_int"));
        EXPECT_EQ(stream.received, "60 80"_octets);
    }
}

/// What a message's writer says when the connection breaks within the octets of its n-th part.
struct Broken {
    std::size_t sent;
    const char* text;
};

TEST(ClientWants, NamesTheFieldInWhichTheConnectionBroke) {
    const Broken all[] = {{0, "gone"},
                          {2, "client_wants.version: gone"},
                          {6, "gone"},
                          {8, "client_private_key.name: gone"},
                          {14, "client_private_key.domain: gone"},
                          {16, "client_private_key.id: gone"},
                          {18, "client_private_key.hasMasterKey: gone"},
                          {21, "client_private_key.hasHallmark: gone"},
                          {24, "client_private_key.testing: gone"},
                          {27, "gone"},
                          {29, "gone"}};
    for (const Broken& broken : all) {
        MemoryStream stream;
        stream.break_after(broken.sent, "gone");
        EXPECT_THAT(write_client_wants(&stream, 514, "web1", ""), StrEq(broken.text)) << broken.sent;
        EXPECT_EQ(stream.received.size(), broken.sent);
    }
}

TEST(Closing, IsAnEmptyElement) {
    MemoryStream stream;
    EXPECT_THAT(write_closing(&stream), IsNull());
    EXPECT_EQ(stream.received, "62 80 00 00"_octets);
}

TEST(ServerOffers, ReadsUpToTheVersion) {
    for (const std::uint32_t tag : {0u, 11u}) {
        MemoryStream stream((tag == 0 ? "61"_octets : ""_octets) + "80 02 02 02 05 A1 80"_octets);
        std::int32_t version = 0;
        EXPECT_THAT(read_server_offers_incomplete(&stream, &version, tag), IsNull());
        EXPECT_EQ(version, 517);
        EXPECT_EQ(stream.unread(), 2u);
    }
}

TEST(ServerPrivateKey, ReadsTheWholeElement) {
    for (const std::uint32_t tag : {0u, 13u}) {
        MemoryStream stream((tag == 0 ? "A1"_octets : ""_octets) +
                            "80 01 01 01 01 01 00 02 00 00 00 55"_octets);
        EXPECT_THAT(read_server_private_key(&stream, tag), IsNull());
        EXPECT_EQ(stream.unread(), 1u);
    }
}

TEST(NegotiateNack, ReadsTheWholeElement) {
    for (const std::uint32_t tag : {0u, 27u}) {
        MemoryStream stream((tag == 0 ? "63"_octets : ""_octets) + "80 04 02 6E 6F 02 00 00 00 55"_octets);
        char* reason = nullptr;
        EXPECT_THAT(read_negotiate_nack(&stream, &reason, tag), IsNull());
        EXPECT_THAT(reason, StrEq("no"));
        EXPECT_EQ(stream.unread(), 1u);
        std::free(reason);
    }
}

TEST(NegotiateNack, HandsOutNoReasonWhenItIsNotWhole) {
    MemoryStream stream("63 80 04 02 6E 6F 00 01"_octets);
    char* reason = nullptr;
    EXPECT_THAT(read_negotiate_nack(&stream, &reason, 0),
                StrEq("List not terminated correctly in skip_to_eol"));
    EXPECT_THAT(reason, IsNull());
}

TEST(Messages, CutBeforeTheirIdentifierAreNone) {
    std::int32_t version = 0;
    char* reason = nullptr;
    MemoryStream stream("19"_octets);
    EXPECT_THAT(read_server_offers_incomplete(&stream, &version, 0),
                StrEq("Peer closed connection unexpectedly"));
    EXPECT_THAT(read_server_private_key(&stream, 0), StrEq("Peer closed connection unexpectedly"));
    EXPECT_THAT(read_negotiate_nack(&stream, &reason, 0), StrEq("Peer closed connection unexpectedly"));
}

TEST(Messages, RefuseAnIdentifierThatIsNotTheirs) {
    std::int32_t version = 0;
    char* reason = nullptr;
    MemoryStream stream("80 00 00"_octets);
    EXPECT_THAT(read_server_offers_incomplete(&stream, &version, 27),
                StrEq("Wrong tag (27) encountered in read_server_offers_incomplete"));
    EXPECT_THAT(read_server_private_key(&stream, 11),
                StrEq("Wrong tag (11) encountered in read_server_private_key"));
    EXPECT_THAT(read_negotiate_nack(&stream, &reason, 11),
                StrEq("Wrong tag (11) encountered in read_negotiate_nack"));
    EXPECT_THAT(read_negotiate_nack(&stream, &reason, 4294967295u),
                StrEq("Wrong tag (-1) encountered in read_negotiate_nack"));
    EXPECT_THAT(reason, IsNull());
    EXPECT_EQ(stream.unread(), 3u);
}

} // namespace
