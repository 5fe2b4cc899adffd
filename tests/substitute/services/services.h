#pragma once
/// The service manager. Which services there are and how they behave, a test scripts.
#include "substitute/types.h"

inline constexpr DWORD SC_MANAGER_CONNECT = 0x0001;
inline constexpr DWORD SC_MANAGER_ALL_ACCESS = 0xF003F;
inline constexpr DWORD SERVICE_QUERY_CONFIG = 0x0001;
inline constexpr DWORD SERVICE_QUERY_STATUS = 0x0004;
inline constexpr DWORD SERVICE_ENUMERATE_DEPENDENTS = 0x0008;
inline constexpr DWORD SERVICE_START = 0x0010;
inline constexpr DWORD SERVICE_STOP = 0x0020;
inline constexpr DWORD SERVICE_ALL_ACCESS = 0xF01FF;

inline constexpr DWORD SERVICE_CONTROL_STOP = 1;
inline constexpr DWORD SERVICE_ACCEPT_STOP = 1;
inline constexpr DWORD SERVICE_WIN32_OWN_PROCESS = 0x10;

inline constexpr DWORD SERVICE_BOOT_START = 0;
inline constexpr DWORD SERVICE_SYSTEM_START = 1;
inline constexpr DWORD SERVICE_AUTO_START = 2;
inline constexpr DWORD SERVICE_DEMAND_START = 3;
inline constexpr DWORD SERVICE_DISABLED = 4;

inline constexpr DWORD SERVICE_STOPPED = 1;
inline constexpr DWORD SERVICE_START_PENDING = 2;
inline constexpr DWORD SERVICE_STOP_PENDING = 3;
inline constexpr DWORD SERVICE_RUNNING = 4;
inline constexpr DWORD SERVICE_CONTINUE_PENDING = 5;
inline constexpr DWORD SERVICE_PAUSE_PENDING = 6;
inline constexpr DWORD SERVICE_PAUSED = 7;

inline constexpr DWORD SERVICE_ACTIVE = 1;

struct SERVICE_STATUS {
    DWORD dwServiceType;
    DWORD dwCurrentState;
    DWORD dwControlsAccepted;
    DWORD dwWin32ExitCode;
    DWORD dwServiceSpecificExitCode;
    DWORD dwCheckPoint;
    DWORD dwWaitHint;
};

struct QUERY_SERVICE_CONFIGA {
    DWORD dwServiceType;
    DWORD dwStartType;
    DWORD dwErrorControl;
    LPSTR lpBinaryPathName;
    LPSTR lpLoadOrderGroup;
    DWORD dwTagId;
    LPSTR lpDependencies;
    LPSTR lpServiceStartName;
    LPSTR lpDisplayName;
};

struct ENUM_SERVICE_STATUSA {
    LPSTR lpServiceName;
    LPSTR lpDisplayName;
    SERVICE_STATUS ServiceStatus;
};

SC_HANDLE OpenSCManagerA(LPCSTR machine, LPCSTR database, DWORD access);
SC_HANDLE OpenServiceA(SC_HANDLE manager, LPCSTR name, DWORD access);
BOOL QueryServiceStatus(SC_HANDLE service, SERVICE_STATUS* status);
/// The texts of the configuration are empty.
BOOL QueryServiceConfigA(SC_HANDLE service, QUERY_SERVICE_CONFIGA* config, DWORD size, DWORD* needed);
/// Running dependents only.
BOOL EnumDependentServicesA(SC_HANDLE service, DWORD state, ENUM_SERVICE_STATUSA* services, DWORD size,
                            DWORD* needed, DWORD* count);
BOOL ControlService(SC_HANDLE service, DWORD control, SERVICE_STATUS* status);
BOOL StartServiceA(SC_HANDLE service, DWORD argument_count, LPCSTR* arguments);
BOOL CloseServiceHandle(SC_HANDLE handle);
