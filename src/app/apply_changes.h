#pragma once
#include "pages/configuration.h"

/// Writes what changed in `configuration` and, when it names a service, restarts that service around the
/// writing, asking first. Problems with the service are shown in message boxes, and the values are written
/// all the same. Throws the store's text when a value cannot be written; the values written before it stay
/// written.
void apply_changes(Configuration& configuration);
