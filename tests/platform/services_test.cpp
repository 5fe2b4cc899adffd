#include "platform/win32.h"
#include "support/system.h"

#include <gmock/gmock.h>

namespace {

const char* const service_name = "TavrinTestsService";

class Services : public CleanSystem {
protected:
    Services() : manager_(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
        install_broken_service(service_name);
    }
    ~Services() override {
        CloseServiceHandle(manager_);
        remove_service(service_name);
    }
    SC_HANDLE open(const char* name, DWORD access = SERVICE_ALL_ACCESS) const {
        SetLastError(0);
        return OpenServiceA(manager_, name, access);
    }
    DWORD open_error(const char* name) const {
        EXPECT_EQ(open(name), nullptr);
        return GetLastError();
    }

    SC_HANDLE manager_;
    SERVICE_STATUS status_{};
};

/// The last error after a call that is to fail.
template <typename Call> DWORD error_of(Call call) {
    SetLastError(0);
    EXPECT_FALSE(call());
    return GetLastError();
}

TEST_F(Services, AreFoundWithoutCase) {
    const SC_HANDLE service = open("TAVRINtestsSERVICE");
    EXPECT_NE(service, nullptr);
    EXPECT_TRUE(CloseServiceHandle(service));
}

TEST_F(Services, AreNotFoundWhenMissing) {
    EXPECT_EQ(open_error("TavrinTestsMissing"), DWORD{ERROR_SERVICE_DOES_NOT_EXIST});
    EXPECT_EQ(open_error(std::string(300, 'x').c_str()), DWORD{ERROR_SERVICE_DOES_NOT_EXIST});
}

TEST_F(Services, AreRefusedByImpossibleNames) {
    EXPECT_EQ(open_error(""), DWORD{ERROR_INVALID_NAME});
    EXPECT_EQ(open_error("a\\b"), DWORD{ERROR_INVALID_NAME});
    EXPECT_EQ(open_error("a/b"), DWORD{ERROR_INVALID_NAME});
}

TEST_F(Services, TellTheirState) {
    const SC_HANDLE service = open(service_name);
    EXPECT_TRUE(QueryServiceStatus(service, &status_));
    EXPECT_EQ(status_.dwCurrentState, DWORD{SERVICE_STOPPED});
    EXPECT_EQ(status_.dwServiceType, DWORD{SERVICE_WIN32_OWN_PROCESS});
    EXPECT_EQ(status_.dwControlsAccepted, 0U);
    CloseServiceHandle(service);
}

TEST_F(Services, ThatAreStoppedCannotBeStopped) {
    const SC_HANDLE service = open(service_name);
    EXPECT_EQ(error_of([&] { return ControlService(service, SERVICE_CONTROL_STOP, &status_); }),
              DWORD{ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_EQ(status_.dwCurrentState, DWORD{SERVICE_STOPPED});
    CloseServiceHandle(service);
}

TEST_F(Services, WhoseProgramIsMissingFailToStart) {
    const SC_HANDLE service = open(service_name);
    EXPECT_EQ(error_of([&] { return StartServiceA(service, 0, nullptr); }), DWORD{ERROR_FILE_NOT_FOUND});
    CloseServiceHandle(service);
}

TEST_F(Services, AllowWhatTheyWereOpenedFor) {
    const SC_HANDLE reader = open(service_name, SERVICE_QUERY_STATUS);
    EXPECT_EQ(error_of([&] { return StartServiceA(reader, 0, nullptr); }), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(error_of([&] { return ControlService(reader, SERVICE_CONTROL_STOP, &status_); }),
              DWORD{ERROR_ACCESS_DENIED});
    CloseServiceHandle(reader);
    const SC_HANDLE stopper = open(service_name, SERVICE_STOP);
    EXPECT_EQ(error_of([&] { return QueryServiceStatus(stopper, &status_); }), DWORD{ERROR_ACCESS_DENIED});
    CloseServiceHandle(stopper);
}

TEST_F(Services, NeedAHandleOfTheirOwn) {
    EXPECT_EQ(error_of([&] { return QueryServiceStatus(nullptr, &status_); }), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(error_of([&] { return QueryServiceStatus(manager_, &status_); }), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(error_of([&] { return CloseServiceHandle(nullptr); }), DWORD{ERROR_INVALID_HANDLE});
    SetLastError(0);
    EXPECT_EQ(OpenServiceA(nullptr, service_name, SERVICE_ALL_ACCESS), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

} // namespace
