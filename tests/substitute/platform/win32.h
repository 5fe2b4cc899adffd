#pragma once
/// Replaces the program's own header of this name in builds without Windows. Declares what the program uses
/// from Windows; the sources around it implement that in memory (sockets excepted, which are real
/// everywhere).
#include "substitute/dialogs/shell.h"
#include "substitute/kernel/kernel.h"
#include "substitute/registry/registry.h"
#include "substitute/services/services.h"
#include "substitute/sockets/winsock.h"
#include "substitute/types.h"
#include "substitute/windows/user.h"
