#pragma once

/// Called once before a suite opens its first window. Under Wine it takes the suite's windows out of the
/// window manager's hands: where there is none, Wine would wait two seconds for it at every window closed.
void prepare_display();
