#include "platform/win32.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) { return 0; }
