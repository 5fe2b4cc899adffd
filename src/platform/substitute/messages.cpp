#include "platform/substitute/user.h"

BOOL PostThreadMessageA(DWORD, UINT, WPARAM, LPARAM) { return TRUE; }
