#include "base/exceptions.h"
#include "platform/win32.h"

#include <gmock/gmock.h>
#include <memory>
#include <type_traits>

namespace {

using namespace error;

template <typename Derived, typename Base>
constexpr bool plainly_derived = std::is_convertible_v<Derived*, Base*>;

TEST(Exceptions, FormOneFamily) {
    static_assert(std::is_abstract_v<Exception> && std::has_virtual_destructor_v<Exception>);
    static_assert(plainly_derived<ESystemError, Exception> && plainly_derived<EParseError, Exception>);
    static_assert(plainly_derived<EFileNotFoundError, ESystemError>);
    static_assert(plainly_derived<EFileExistsError, ESystemError>);
    static_assert(!plainly_derived<EParseError, ESystemError>);
    static_assert(!plainly_derived<EFileExistsError, EFileNotFoundError>);
}

TEST(Exceptions, TellDescriptionThenMessageWithNothingBetween) {
    ESystemError failure("disk: gone");
    EXPECT_EQ(failure.message, "");
    EXPECT_EQ(failure.full_text(), "disk: gone");
    failure.message = " Try again.";
    EXPECT_EQ(failure.description(), "disk: gone");
    EXPECT_EQ(failure.full_text(), "disk: gone Try again.");
}

TEST(Exceptions, CopyBothTexts) {
    EParseError original("Error parsing: \"x\"");
    original.message = " in line 3";
    const EParseError copy(original);
    EXPECT_EQ(copy.description(), "Error parsing: \"x\"");
    EXPECT_EQ(copy.message, " in line 3");
    EFileExistsError other("other");
    other = EFileExistsError("assigned");
    EXPECT_EQ(other.full_text(), "assigned");
}

template <typename Caught> std::string caught_text(DWORD code) {
    try {
        throw_system_error(code, "Couldn't read");
    } catch (const Caught& failure) {
        EXPECT_EQ(failure.message, "");
        return failure.description();
    } catch (...) {
        return "another class";
    }
}

TEST(ThrowSystemError, ThrowsTheClassOfTheCode) {
    EXPECT_EQ(caught_text<EFileNotFoundError>(2), "Couldn't read: File not found.");
    EXPECT_EQ(caught_text<EFileNotFoundError>(3), "Couldn't read: Path not found.");
    EXPECT_EQ(caught_text<EFileExistsError>(183), "Couldn't read: File already exists.");
    EXPECT_EQ(caught_text<ESystemError>(5), "Couldn't read: Access denied.");
}

TEST(ThrowSystemError, ThrowsNeitherFileErrorForOtherCodes) {
    for (const DWORD code : {0U, 1U, 4U, 5U, 80U, 182U, 184U}) {
        EXPECT_EQ(caught_text<EFileNotFoundError>(code), "another class") << code;
        EXPECT_EQ(caught_text<EFileExistsError>(code), "another class") << code;
        EXPECT_NE(caught_text<ESystemError>(code), "another class") << code;
    }
    EXPECT_EQ(caught_text<EFileExistsError>(2), "another class");
    EXPECT_EQ(caught_text<EFileNotFoundError>(183), "another class");
}

TEST(ThrowSystemError, ThrowsWhatHandlersOfTheBasesCatch) {
    EXPECT_EQ(caught_text<ESystemError>(2), "Couldn't read: File not found.");
    EXPECT_EQ(caught_text<ESystemError>(183), "Couldn't read: File already exists.");
    for (const DWORD code : {2U, 3U, 5U, 183U})
        EXPECT_NE(caught_text<Exception>(code), "another class") << code;
    EXPECT_EQ(caught_text<EParseError>(5), "another class");
}

TEST(ThrowSystemError, KeepsTheNumberOfAnUnknownCode) {
    EXPECT_EQ(caught_text<ESystemError>(99999), "Couldn't read: 99999 (FormatMessage: 317)");
}

} // namespace
