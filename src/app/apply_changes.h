#pragma once
#include "pages/configuration.h"

/// Writes what changed in `configuration` and, when it names a service, restarts that service around the
/// writing, asking first. Trouble with the service is told in message boxes and never keeps the values from
/// being written. Throws the store's text when a value cannot be written; the values written before it stay
/// written.
void apply_changes(Configuration& configuration);
