#include "support/clean_system.h"

#include "platform/substitute/control.h"

void clean_system() { substitute::reset(); }
