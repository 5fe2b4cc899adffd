#include "window/guard.h"

#include "platform/win32.h"

#include <gmock/gmock.h>
#include <string>

namespace {

const auto default_result = [] { return LRESULT{7}; };

TEST(Guard, ReturnsWhatTheBodyReturns) {
    EXPECT_EQ(guarded(
                  -1, [] { return LRESULT{3}; }, default_result),
              3);
    EXPECT_FALSE(keeping());
    rethrow_kept();
}

TEST(Guard, KeepsAnExceptionAndDoesTheDefaultUntilItIsRethrown) {
    EXPECT_EQ(guarded(
                  -1, []() -> LRESULT { throw std::string("broken"); }, default_result),
              -1);
    EXPECT_TRUE(keeping());
    MSG quit{};
    ASSERT_TRUE(PeekMessageA(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(quit.wParam, WPARAM{1});
    EXPECT_EQ(guarded(
                  -1, [] { return LRESULT{3}; }, default_result),
              7);
    try {
        rethrow_kept();
        FAIL() << "nothing was thrown";
    } catch (const std::string& text) {
        EXPECT_EQ(text, "broken");
    }
    EXPECT_FALSE(keeping());
    EXPECT_EQ(guarded(
                  -1, [] { return LRESULT{3}; }, default_result),
              3);
}

} // namespace
