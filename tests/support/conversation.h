#pragma once
/// The usual conversation: what the agent "web1" without a domain sends, and what servers answer.
#include "support/octets.h"

namespace conversation {

inline const Octets request = "60 80 02 02 02 02 A1 80 04 04 77 65 62 31 04 00 04 00 "
                              "01 01 01 01 01 01 01 01 01 00 00 00 00"_octets;
inline const Octets offer = "61 80 02 02 02 05 A1 80 01 01 01 01 01 00 00 00 00 00"_octets;
/// With the reason "no".
inline const Octets refusal = "63 80 04 02 6E 6F 00 00"_octets;
/// The agent's message after an offer that it accepts.
inline const Octets closing = "62 80 00 00"_octets;

} // namespace conversation
