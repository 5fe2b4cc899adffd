#include "protocol/negotiation.h"

#include "support/memory_stream.h"
#include "support/server_answers.h"

#include <gmock/gmock.h>

namespace {

using testing::IsNull;
using testing::StrEq;

const Octets wishes = "60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 00 04 00 "
                      "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets;
const Octets closing = "62 80 00 00"_octets;
const Octets good_offer = "61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00"_octets;

/// How much is left of the answer when every read brings only what it asks for.
std::uint64_t unread_by_one(const ServerAnswer& answer) {
    MemoryStream stream(answer.octets);
    negotiate(&stream, "web1", "", nullptr);
    return stream.unread();
}

/// `piece`: in pieces of how many octets the answer arrives; 0: each read brings what it asks for.
void expect_answered(const ServerAnswer& answer, std::size_t piece = 0) {
    MemoryStream stream(answer.octets);
    stream.arrives_in_pieces_of(piece);
    int status = 77;
    const char* text = negotiate(&stream, "web1", "", &status);
    EXPECT_EQ(text != nullptr ? text : "", answer.text) << answer.what;
    EXPECT_EQ(status, answer.status) << answer.what;
    EXPECT_EQ(stream.received, answer.status == 0 ? wishes + closing : wishes) << answer.what;
    EXPECT_EQ(stream.closes, 0) << answer.what;
    EXPECT_EQ(stream.unread(), unread_by_one(answer)) << answer.what;
}

TEST(Negotiate, ClosesWithTheClosingElementAfterAGoodOffer) {
    MemoryStream stream(good_offer);
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), IsNull());
    EXPECT_EQ(status, 0);
    EXPECT_EQ(stream.received, wishes + closing);
    EXPECT_EQ(stream.unread(), 0u);
    EXPECT_FALSE(stream.pending);
}

TEST(Negotiate, SendsEachOfItsMessagesAtOnce) {
    MemoryStream refused("63 80 04 02 6E 6F 00 00"_octets);
    negotiate(&refused, "web1", "", nullptr);
    EXPECT_EQ(refused.received, wishes);
    EXPECT_EQ(refused.writes, 1);
    MemoryStream accepted(good_offer);
    negotiate(&accepted, "web1", "", nullptr);
    EXPECT_EQ(accepted.received, wishes + closing);
    EXPECT_EQ(accepted.writes, 2);
}

TEST(Negotiate, SendsTheLongestTextsAtOnce) {
    MemoryStream stream(good_offer);
    EXPECT_THAT(negotiate(&stream, std::string(256, 'n').c_str(), std::string(1024, 'd').c_str(), nullptr),
                IsNull());
    EXPECT_EQ(stream.received, "60 80 02 02 02 02 A1 80 04 82 01 00"_octets + Octets(256, 'n') +
                                   "04 82 04 00"_octets + Octets(1024, 'd') +
                                   "04 00 01 01 01 01 01 01 01 01 01 00 00 00 00"_octets + closing);
    EXPECT_EQ(stream.writes, 2);
}

TEST(Negotiate, SendsWhatStandsBeforeATextThatIsTooLong) {
    MemoryStream name(good_offer);
    int status = 77;
    EXPECT_THAT(negotiate(&name, std::string(257, 'n').c_str(), "", &status),
                StrEq("client_private_key.name: data out of range in write_string"));
    EXPECT_EQ(status, 2);
    EXPECT_EQ(name.received, "60 80 02 02 02 02 A1 80 04"_octets);
    EXPECT_EQ(name.writes, 1);
    MemoryStream domain(good_offer);
    EXPECT_THAT(negotiate(&domain, "a", std::string(1025, 'd').c_str(), &status),
                StrEq("client_private_key.domain: data out of range in write_string"));
    EXPECT_EQ(domain.received, "60 80 02 02 02 02 A1 80 04 01 61 04"_octets);
    EXPECT_EQ(domain.writes, 1);
    EXPECT_EQ(domain.unread(), good_offer.size());
}

TEST(Negotiate, SaysThatItCouldNotSendRatherThanThatATextIsTooLong) {
    MemoryStream stream(good_offer);
    stream.break_after(0, "gone");
    EXPECT_THAT(negotiate(&stream, std::string(257, 'n').c_str(), "", nullptr), StrEq("gone"));
}

TEST(Negotiate, NeedsNoStatus) {
    MemoryStream accepting(good_offer);
    EXPECT_THAT(negotiate(&accepting, "web1", "", nullptr), IsNull());
    MemoryStream refusing("63 80 04 02 6E 6F 00 00"_octets);
    EXPECT_THAT(negotiate(&refusing, "web1", "", nullptr), StrEq("Tavrin Server rejected us: no"));
}

TEST(Negotiate, AcceptsWhatTheProtocolAllows) {
    for (const ServerAnswer& answer : acceptable_answers())
        expect_answered(answer);
}

TEST(Negotiate, SaysWhatIsWrongWithAnOffer) {
    for (const ServerAnswer& answer : bad_offers())
        expect_answered(answer);
}

TEST(Negotiate, ComparesTheHighOctetOfTheVersion) {
    for (const ServerAnswer& answer : other_versions())
        expect_answered(answer);
}

TEST(Negotiate, ReadsTheWholeOfferBeforeItRefusesTheVersion) {
    MemoryStream stream("61 80 02 02 03 00 A1 80 01 01 01 01 01 00 00 00 04 01 41 00 00"_octets);
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), testing::NotNull());
    EXPECT_EQ(status, 2);
    EXPECT_EQ(stream.unread(), 0u);
}

TEST(Negotiate, HandsOnTheReasonOfARefusal) {
    for (const ServerAnswer& answer : refusals())
        expect_answered(answer);
}

TEST(Negotiate, FailsWhereverTheAnswerIsCut) {
    for (const ServerAnswer& answer : cut_answers())
        expect_answered(answer);
}

TEST(Negotiate, EndsTheSameInWhateverPiecesTheAnswerArrives) {
    for (const auto& answers :
         {acceptable_answers(), bad_offers(), other_versions(), refusals(), cut_answers()}) {
        for (const ServerAnswer& answer : answers) {
            for (const std::size_t size : {1u, 2u, 3u, 5u, 17u, 4096u})
                expect_answered(answer, size);
        }
    }
}

TEST(Negotiate, ReadsNothingWhenItCouldNotAsk) {
    for (std::size_t sent = 0; sent < wishes.size(); ++sent) {
        MemoryStream stream(good_offer);
        stream.break_after(sent, "gone");
        int status = 77;
        EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("gone"));
        EXPECT_EQ(status, 2);
        EXPECT_EQ(stream.unread(), good_offer.size());
    }
}

TEST(Negotiate, FailsWhenItCannotClose) {
    for (std::size_t sent = 0; sent < closing.size(); ++sent) {
        MemoryStream stream(good_offer);
        stream.break_after(wishes.size() + sent, "gone");
        int status = 77;
        EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("gone"));
        EXPECT_EQ(status, 2);
    }
}

TEST(Negotiate, HandsOnAFailingFlush) {
    MemoryStream stream(good_offer);
    stream.socket_flush = [](Stream*) -> const char* { return "stuck"; };
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("stuck"));
    EXPECT_EQ(status, 2);
}

TEST(Negotiate, TenMillionOpenElementsInAnOfferNeedNoStack) {
    MemoryStream stream("61 80 02 02 02 05 A1 80 01 01 01 01 01 00"_octets);
    stream.sends("30 80"_octets, 10000000);
    stream.sends("00 00"_octets, 10000000);
    stream.sends("00 00 00 00"_octets);
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), IsNull());
    EXPECT_EQ(status, 0);
}

TEST(Negotiate, FillersWithoutEndEndWithThePeer) {
    MemoryStream stream;
    stream.sends("19"_octets, 10000000);
    EXPECT_THAT(negotiate(&stream, "web1", "", nullptr), StrEq("Peer closed connection unexpectedly"));
}

} // namespace
