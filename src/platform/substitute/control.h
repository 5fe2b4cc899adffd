#pragma once
/// The one header through which a test talks to the substitute: it scripts the user and the system's answers,
/// makes calls fail, lets the clock run and lists what was asked.
#include "platform/substitute/control/calls.h"
#include "platform/substitute/control/clock.h"
#include "platform/substitute/control/dialogs.h"
#include "platform/substitute/control/errors.h"
#include "platform/substitute/control/events.h"
#include "platform/substitute/control/registry.h"
#include "platform/substitute/control/services.h"
#include "platform/substitute/control/sockets.h"
#include "platform/substitute/control/user.h"
