#pragma once

namespace substitute {

/// How many event handles are open.
int open_events();

} // namespace substitute
