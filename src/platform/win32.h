#pragma once
/// The only header for the operating system: every file that calls Windows includes this header and nothing
/// else of the system. A build without Windows puts another header of this name before it, which declares
/// what the program uses under the Windows names.
#include <winsock2.h>

#include <windows.h>

#include <aclapi.h>
#include <cderr.h>
#include <commctrl.h>
#include <commdlg.h>
#include <iphlpapi.h>
#include <objbase.h>
#include <sddl.h>
#include <shellapi.h>
#include <shlobj.h>
