#include "support/clean_system.h"

#include "substitute/control.h"

void clean_system() { substitute::reset(); }
