#include "base/exceptions.h"
#include "base/messages.h"
#include "substitute/control.h"
#include "support/system.h"

#include <gmock/gmock.h>

namespace {

using testing::StrEq;

class ErrorTexts : public CleanSystem {};

TEST_F(ErrorTexts, LoseEveryLineEndAtTheirEndAndNoOther) {
    substitute::set_system_text(700, "first\r\nsecond.\r\n\n\r");
    EXPECT_THAT(system_error_text(700), StrEq("first\r\nsecond."));
    substitute::set_system_text(700, "blank stays. \n");
    EXPECT_THAT(system_error_text(700), StrEq("blank stays. "));
    substitute::set_system_text(700, "!");
    EXPECT_THAT(system_error_text(700), StrEq("!"));
    substitute::set_system_text(700, "no line end");
    EXPECT_THAT(system_error_text(700), StrEq("no line end"));
}

TEST_F(ErrorTexts, AreTheNumberWhereTheSystemSaysNothing) {
    substitute::set_system_text(4000000000U, "\r\n\r\n");
    EXPECT_THAT(system_error_text(4000000000U), StrEq("4000000000"));
    EXPECT_EQ(system_error_string(4000000000U), "4000000000");
}

TEST_F(ErrorTexts, FillTheWholeBuffer) {
    substitute::set_system_text(700, std::string(255, 'x'));
    EXPECT_EQ(system_error_string(700), std::string(255, 'x'));
    substitute::set_system_text(700, std::string(256, 'x'));
    EXPECT_EQ(system_error_string(700), "700 (FormatMessage: 122)");
}

TEST_F(ErrorTexts, TellBothNumbersWhenFormatMessageFails) {
    substitute::fail_call("FormatMessageA", 1, 8);
    EXPECT_THAT(system_error_text(10061), StrEq("10061 (FormatMessage: 8)"));
    substitute::fail_call("FormatMessageA", 1, 4294967295U);
    EXPECT_EQ(system_error_string(4294967295U), "4294967295 (FormatMessage: 4294967295)");
}

TEST_F(ErrorTexts, OfAThrownErrorTellBothNumbersToo) {
    substitute::fail_call("FormatMessageA", 1, 8);
    try {
        throw_system_error(2, "Couldn't signal event");
    } catch (const error::EFileNotFoundError& failure) {
        EXPECT_EQ(failure.full_text(), "Couldn't signal event: 2 (FormatMessage: 8)");
        return;
    }
    FAIL() << "nothing was thrown";
}

} // namespace
