#pragma once
/// Keys and clicks that the program has not been given yet.

namespace input {

/// Gives the program the next one as posted messages. False when there is none.
bool feed();

} // namespace input
