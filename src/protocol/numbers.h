#pragma once
/// INTEGER and BOOLEAN:
///
///     02 len content    INTEGER: two's complement, most significant octet first, 0 to 4 octets. Written in
///     the
///                       fewest octets that hold the value; 0 has no content at all.
///                       02 00 = 0    02 01 FF = -1    02 02 00 80 = 128    02 02 02 02 = 514
///     01 01 content     BOOLEAN: 00 is false. True is written as 01; any other octet but 00 is read as true.
///
/// `tag` is the identifier when the caller has read it already, else 0.
#include "protocol/stream.h"

/// Fails for a value outside `min` to `max`.
const char* read_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t* value,
                            std::uint32_t tag);
/// Fails for a value outside `min` to `max`, before anything is written.
const char* write_signed_int(Stream* stream, std::int32_t min, std::int32_t max, std::int32_t value);

const char* read_bool(Stream* stream, bool* value, std::uint32_t tag);
const char* write_bool(Stream* stream, bool value);
