#pragma once
/// The service manager. Which services there are and how they behave, a test scripts.
#include "substitute/types.h"

inline constexpr DWORD SC_MANAGER_CONNECT = 0x0001;
inline constexpr DWORD SC_MANAGER_ALL_ACCESS = 0xF003F;
inline constexpr DWORD SERVICE_QUERY_STATUS = 0x0004;
inline constexpr DWORD SERVICE_START = 0x0010;
inline constexpr DWORD SERVICE_STOP = 0x0020;
inline constexpr DWORD SERVICE_ALL_ACCESS = 0xF01FF;

inline constexpr DWORD SERVICE_CONTROL_STOP = 1;
inline constexpr DWORD SERVICE_ACCEPT_STOP = 1;
inline constexpr DWORD SERVICE_WIN32_OWN_PROCESS = 0x10;

inline constexpr DWORD SERVICE_STOPPED = 1;
inline constexpr DWORD SERVICE_START_PENDING = 2;
inline constexpr DWORD SERVICE_STOP_PENDING = 3;
inline constexpr DWORD SERVICE_RUNNING = 4;
inline constexpr DWORD SERVICE_PAUSED = 7;

struct SERVICE_STATUS {
    DWORD dwServiceType;
    DWORD dwCurrentState;
    DWORD dwControlsAccepted;
    DWORD dwWin32ExitCode;
    DWORD dwServiceSpecificExitCode;
    DWORD dwCheckPoint;
    DWORD dwWaitHint;
};

SC_HANDLE OpenSCManagerA(LPCSTR machine, LPCSTR database, DWORD access);
SC_HANDLE OpenServiceA(SC_HANDLE manager, LPCSTR name, DWORD access);
BOOL QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status);
BOOL ControlService(SC_HANDLE service, DWORD control, SERVICE_STATUS* status);
BOOL StartServiceA(SC_HANDLE service, DWORD argument_count, LPCSTR* arguments);
BOOL CloseServiceHandle(SC_HANDLE handle);
