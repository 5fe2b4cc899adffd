#include "protocol/negotiation.h"

#include "support/conversation.h"
#include "support/memory_stream.h"
#include "support/server_answers.h"

#include <gmock/gmock.h>

namespace {

using testing::StrEq;

using conversation::closing;
using conversation::request;

/// How much of the answer is left unread if every read returns only what it asks for.
std::uint64_t unread_by_one(const ServerAnswer& answer) {
    MemoryStream stream(answer.octets);
    negotiate(&stream, "web1", "", nullptr);
    return stream.unread();
}

/// `piece`: the number of octets in which the answer arrives at once; 0: each read returns what it asks for.
void expect_answered(const ServerAnswer& answer, std::size_t piece) {
    MemoryStream stream(answer.octets);
    stream.arrives_in_pieces_of(piece);
    int status = 77;
    const char* text = negotiate(&stream, "web1", "", &status);
    EXPECT_EQ(text != nullptr ? text : "", answer.text) << answer.what;
    EXPECT_EQ(status, answer.status) << answer.what;
    EXPECT_EQ(stream.received, answer.status == 0 ? request + closing : request) << answer.what;
    EXPECT_EQ(stream.closes, 0) << answer.what;
    EXPECT_EQ(stream.unread(), unread_by_one(answer)) << answer.what;
}

TEST(Negotiate, SendsEachOfItsMessagesAtOnce) {
    MemoryStream refused(conversation::refusal);
    negotiate(&refused, "web1", "", nullptr);
    EXPECT_EQ(refused.received, request);
    EXPECT_EQ(refused.writes, 1);
    MemoryStream accepted(conversation::offer);
    negotiate(&accepted, "web1", "", nullptr);
    EXPECT_EQ(accepted.received, request + closing);
    EXPECT_EQ(accepted.writes, 2);
    EXPECT_FALSE(accepted.pending);
}

TEST(Negotiate, SaysThatItCouldNotSendRatherThanThatATextIsTooLong) {
    MemoryStream stream(conversation::offer);
    stream.break_after(0, "gone");
    EXPECT_THAT(negotiate(&stream, std::string(257, 'n').c_str(), "", nullptr), StrEq("gone"));
}

TEST(Negotiate, ReadsTheWholeOfferBeforeItRefusesTheVersion) {
    MemoryStream stream("61 80 02 02 03 00 A1 80 01 01 01 01 01 00 00 00 04 01 41 00 00"_octets);
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), testing::NotNull());
    EXPECT_EQ(status, 2);
    EXPECT_EQ(stream.unread(), 0u);
}

/// Good answers and bad ones, and every beginning of both.
TEST(Negotiate, AnswersEveryAnswerInWhateverPiecesItArrives) {
    for (const auto& answers :
         {acceptable_answers(), bad_offers(), other_versions(), refusals(), cut_answers()}) {
        for (const ServerAnswer& answer : answers) {
            for (const std::size_t size : {0u, 1u, 2u, 3u, 5u, 17u, 4096u})
                expect_answered(answer, size);
        }
    }
}

TEST(Negotiate, ReadsNothingWhenItCouldNotAsk) {
    for (std::size_t sent = 0; sent < request.size(); ++sent) {
        MemoryStream stream(conversation::offer);
        stream.break_after(sent, "gone");
        int status = 77;
        EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("gone"));
        EXPECT_EQ(status, 2);
        EXPECT_EQ(stream.unread(), conversation::offer.size());
    }
}

TEST(Negotiate, FailsWhenItCannotClose) {
    for (std::size_t sent = 0; sent < closing.size(); ++sent) {
        MemoryStream stream(conversation::offer);
        stream.break_after(request.size() + sent, "gone");
        int status = 77;
        EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("gone"));
        EXPECT_EQ(status, 2);
    }
}

TEST(Negotiate, HandsOnAFailingFlush) {
    MemoryStream stream(conversation::offer);
    stream.socket_flush = [](Stream*) -> const char* { return "stuck"; };
    int status = 77;
    EXPECT_THAT(negotiate(&stream, "web1", "", &status), StrEq("stuck"));
    EXPECT_EQ(status, 2);
}

} // namespace
