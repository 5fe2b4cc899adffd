#include "support/machine_interfaces.h"

#include "substitute/control.h"

void see_machine_interfaces() { substitute::use_machine_interfaces(); }
