/// A program that imports its DLLs as programs commonly do. Ends with code 0 when the system's own DLL
/// answered.
#include "platform/win32.h"

int main() {
    ULONG size = 0;
    return GetIpAddrTable(nullptr, &size, FALSE) == ERROR_NOT_SUPPORTED ? 1 : 0;
}
