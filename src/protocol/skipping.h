#pragma once
/// Passing over elements that are not wanted, whatever they hold. A peer may nest them without end: that
/// costs neither stack nor memory, only the time to read them.
#include "protocol/stream.h"

/// Reads one whole element and drops it. `tag` is the identifier when the caller has read it already, else 0.
const char* skip_value(Stream* stream, std::uint32_t tag);

/// Drops all further elements of an indefinite element, its end of contents included. Readers of such
/// elements end with this, so that a peer may append fields which this program does not know.
const char* skip_to_eol(Stream* stream);
