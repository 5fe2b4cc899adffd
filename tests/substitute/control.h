#pragma once
/// The only header through which a test controls the substitute: it scripts the user and the system's
/// answers, makes calls fail, advances the clock and lists the calls.
#include "substitute/control/calls.h"
#include "substitute/control/clock.h"
#include "substitute/control/dialogs.h"
#include "substitute/control/errors.h"
#include "substitute/control/events.h"
#include "substitute/control/registry.h"
#include "substitute/control/services.h"
#include "substitute/control/sockets.h"
#include "substitute/control/user.h"
