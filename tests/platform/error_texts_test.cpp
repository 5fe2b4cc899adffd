#include "platform/win32.h"

#include <gmock/gmock.h>

namespace {

using testing::Values;

constexpr DWORD format_flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;

struct CodeText {
    DWORD code;
    const char* text; // empty: the system has none
};

std::ostream& operator<<(std::ostream& out, const CodeText& row) { return out << row.code; }

class SystemTexts : public testing::TestWithParam<CodeText> {};

TEST_P(SystemTexts, AreThese) {
    char buffer[256] = "untouched";
    SetLastError(0);
    const DWORD length =
        FormatMessageA(format_flags, nullptr, GetParam().code, 0, buffer, sizeof buffer, nullptr);
    if (*GetParam().text == '\0') {
        EXPECT_EQ(length, 0U);
        EXPECT_EQ(GetLastError(), DWORD{ERROR_MR_MID_NOT_FOUND});
        return;
    }
    EXPECT_EQ(std::string(buffer), std::string(GetParam().text) + "\r\n");
    EXPECT_EQ(length, std::string(buffer).size());
}

INSTANTIATE_TEST_SUITE_P(
    OfTheSystem, SystemTexts,
    Values(CodeText{0, "Success."}, CodeText{1, "Invalid function."}, CodeText{2, "File not found."},
           CodeText{3, "Path not found."}, CodeText{4, "Too many open files."}, CodeText{5, "Access denied."},
           CodeText{6, "Invalid handle."}, CodeText{8, "Not enough memory."}, CodeText{14, "Out of memory."},
           CodeText{32, "Sharing violation."}, CodeText{50, "Request not supported."},
           CodeText{53, "Bad network path."}, CodeText{64, "Network name deleted."},
           CodeText{67, "Bad network name."}, CodeText{87, "Invalid parameter."},
           CodeText{109, "Broken pipe."}, CodeText{121, "Semaphore timeout."},
           CodeText{122, "Insufficient buffer."}, CodeText{123, "Invalid name."},
           CodeText{161, "Path is invalid."}, CodeText{183, "File already exists."},
           CodeText{206, "File name is too long."}, CodeText{231, "Pipe busy."},
           CodeText{234, "More data available."}, CodeText{259, "No more data available."},
           CodeText{317, "Message 0x%1 not found in file %2."},
           CodeText{998, "No access to memory location."}, CodeText{1018, "Key deleted."},
           CodeText{1115, "Shutdown in progress."}, CodeText{1225, "Connection refused."},
           CodeText{1231, "Network unreachable."}, CodeText{1232, "Host unreachable."},
           CodeText{1450, "No system resources."}));

INSTANTIATE_TEST_SUITE_P(
    OfServices, SystemTexts,
    Values(CodeText{1051, "Dependent services are running."}, CodeText{1052, "Invalid service control."},
           CodeText{1053, "Service request timeout."}, CodeText{1055, "Service database locked."},
           CodeText{1056, "Service already running."}, CodeText{1058, "Service is disabled."},
           CodeText{1060, "Service does not exist."},
           CodeText{1061, "Service cannot accept control message."}, CodeText{1062, "Service not active."},
           CodeText{1063, "Service controller connect failed."}, CodeText{1068, "Service dependency failed."},
           CodeText{1069, "Service login failed."}, CodeText{1072, "Service marked for delete."}));

INSTANTIATE_TEST_SUITE_P(
    OfTheNetwork, SystemTexts,
    Values(CodeText{10004, "Call interrupted."}, CodeText{10009, "Invalid file handle."},
           CodeText{10013, "Access denied."}, CodeText{10014, "Invalid pointer address."},
           CodeText{10022, "Invalid argument."}, CodeText{10024, "Too many open files."}, CodeText{10035, ""},
           CodeText{10036, ""}, CodeText{10037, ""}, CodeText{10038, ""}, CodeText{10039, ""},
           CodeText{10040, ""}, CodeText{10042, ""}, CodeText{10043, ""}, CodeText{10047, ""},
           CodeText{10048, ""}, CodeText{10049, ""}, CodeText{10050, ""}, CodeText{10051, ""},
           CodeText{10052, ""}, CodeText{10053, ""}, CodeText{10054, "Connection reset by peer."},
           CodeText{10055, ""}, CodeText{10056, ""}, CodeText{10057, ""}, CodeText{10058, ""},
           CodeText{10060, ""}, CodeText{10061, "Connection refused."}, CodeText{10064, ""},
           CodeText{10065, ""}, CodeText{10091, ""}, CodeText{10092, ""}, CodeText{10093, ""},
           CodeText{11001, "Host not found."}, CodeText{11002, "Nonauthoritative host not found."},
           CodeText{11003, "Nonrecoverable error."}, CodeText{11004, "Name valid, no data record."}));

INSTANTIATE_TEST_SUITE_P(ThatNobodyKnows, SystemTexts,
                         Values(CodeText{12345, ""}, CodeText{99999, ""}, CodeText{0x7FFFFFFF, ""},
                                CodeText{0xFFFFFFFF, ""}));

TEST(FormatMessage, FailsWhereTheTextDoesNotFit) {
    // "Access denied." with its line end has 16 characters.
    char buffer[32] = "untouched";
    SetLastError(0);
    EXPECT_EQ(FormatMessageA(format_flags, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 16, nullptr), 0U);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_STREQ(buffer, "untouched");
    EXPECT_EQ(FormatMessageA(format_flags, nullptr, ERROR_ACCESS_DENIED, 0, buffer, 17, nullptr), 16U);
}

TEST(FormatMessage, FailsWithoutASource) {
    char buffer[32];
    SetLastError(0);
    EXPECT_EQ(FormatMessageA(FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, 5, 0, buffer, sizeof buffer, nullptr),
              0U);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST(LastError, IsWhatWasSet) {
    SetLastError(10061);
    EXPECT_EQ(GetLastError(), 10061U);
    SetLastError(0);
    EXPECT_EQ(GetLastError(), 0U);
}

} // namespace
