#pragma once
/// The messages of one connection test, for the agent "web1" of "example.org". Each array's own terminator is
/// the last octet of its message.

inline constexpr char request[] = "\x60\x80\x02\x02\x02\x02\xA1\x80\x04\x04web1\x04\x0B"
                                  "example.org\x04\x00\x01\x01\x01\x01\x01\x01\x01\x01\x01\x00\x00\x00";
inline constexpr char offer[] = "\x61\x80\x02\x02\x02\x05\xA1\x80\x01\x01\x01\x01\x01\x00\x00\x00\x00";
inline constexpr char closing[] = "\x62\x80\x00";
