#include "support/display.h"

void prepare_display() {}
