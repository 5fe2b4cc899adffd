#include "support/machine_interfaces.h"

void see_machine_interfaces() {}
