#pragma once
/// Hooks of the kind WH_MSGFILTER. Internal to the substitute.
#include "substitute/windows/user.h"

namespace substitute {

/// Whether a hook took the message that a dialog's loop is about to handle.
bool filter_takes(MSG& message);

} // namespace substitute
