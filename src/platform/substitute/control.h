#pragma once
/// The one header through which a test talks to the substitute: it scripts the user and the system's answers,
/// makes calls fail, lets the clock run and lists what was asked.
#include "platform/substitute/control_calls.h"
#include "platform/substitute/control_clock.h"
#include "platform/substitute/control_dialogs.h"
#include "platform/substitute/control_errors.h"
#include "platform/substitute/control_events.h"
#include "platform/substitute/control_registry.h"
#include "platform/substitute/control_services.h"
#include "platform/substitute/control_sockets.h"
#include "platform/substitute/control_user.h"
