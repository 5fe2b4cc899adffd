#include "base/messages.h"

#include <cstring>
#include <gmock/gmock.h>

namespace {

using testing::StrEq;

TEST(FormatError, FollowsPrintf) {
    EXPECT_THAT(format_error("%s (%d), %u of 100%%", "Error", -3, 7U), StrEq("Error (-3), 7 of 100%"));
    EXPECT_THAT(format_error("%s", ""), StrEq(""));
}

TEST(FormatError, TakesAMessageAsArgumentOfTheNext) {
    const char* const inner = format_error("reset (%d)", 10054);
    EXPECT_THAT(format_error("Error receiving data: %s", inner),
                StrEq("Error receiving data: reset (10054)"));
}

TEST(FormatError, AlternatesBetweenTwoBuffers) {
    const char* const first = format_error("first");
    const char* const second = format_error("second");
    EXPECT_THAT(first, StrEq("first"));
    EXPECT_THAT(second, StrEq("second"));
    const char* const third = format_error("third");
    EXPECT_EQ(third, first);
    EXPECT_THAT(first, StrEq("third"));
    EXPECT_THAT(second, StrEq("second"));
}

TEST(FormatError, CutsToItsBufferTerminatorIncluded) {
    for (const std::size_t length : {254U, 255U, 256U, 257U, 100000U}) {
        const std::string text(length, 'x');
        const char* const message = format_error("%s", text.c_str());
        EXPECT_THAT(message, StrEq(std::string(length < 255 ? length : 255, 'x'))) << length;
    }
    const std::string full(300, 'y');
    const char* const cut = format_error("%s", full.c_str());
    const char* const next = format_error("Error: %s", cut);
    EXPECT_THAT(next, StrEq("Error: " + std::string(248, 'y')));
    EXPECT_EQ(std::strlen(cut), 255U);
}

TEST(SystemErrorText, IsTheSystemsWithoutItsLineEnd) {
    EXPECT_THAT(system_error_text(5), StrEq("Access denied."));
    EXPECT_THAT(system_error_text(2), StrEq("File not found."));
    EXPECT_EQ(system_error_string(183), "File already exists.");
}

TEST(SystemErrorText, LeavesInsertsAsTheyAre) {
    EXPECT_THAT(system_error_text(317), StrEq("Message 0x%1 not found in file %2."));
}

TEST(SystemErrorText, OfAnUnknownCodeIsTheNumberAndWhy) {
    EXPECT_THAT(system_error_text(99999), StrEq("99999 (FormatMessage: 317)"));
    EXPECT_THAT(system_error_text(4294967295U), StrEq("4294967295 (FormatMessage: 317)"));
    EXPECT_EQ(system_error_string(99999), "99999 (FormatMessage: 317)");
}

TEST(SystemErrorText, HasOneBufferWhichOthersLeaveAlone) {
    const char* const first = system_error_text(5);
    format_error("one");
    format_error("two");
    EXPECT_EQ(system_error_string(2), "File not found.");
    EXPECT_THAT(first, StrEq("Access denied."));
    EXPECT_EQ(system_error_text(3), first);
    EXPECT_THAT(first, StrEq("Path not found."));
}

} // namespace
