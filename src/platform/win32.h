#pragma once
/// The one door to the operating system: every file that calls Windows includes this header and nothing else
/// of the system. On Windows it is the system's own headers; elsewhere it declares what the program uses,
/// under the Windows names, and platform/substitute/ implements it in memory (sockets excepted, which are
/// real everywhere).

#ifdef _WIN32
#include <winsock2.h>

#include <windows.h>

#include <cderr.h>
#include <commctrl.h>
#include <commdlg.h>
#include <iphlpapi.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#else
#include "platform/substitute/dialogs/shell.h"
#include "platform/substitute/kernel/kernel.h"
#include "platform/substitute/registry/registry.h"
#include "platform/substitute/services/services.h"
#include "platform/substitute/sockets/winsock.h"
#include "platform/substitute/types.h"
#include "platform/substitute/windows/user.h"
#endif
