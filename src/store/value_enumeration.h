#pragma once
#include "platform/win32.h"

#include <map>
#include <string>

/// Adds (name, data as text) for each value of the key `path` under `root` whose data, read up to its first
/// zero byte, is not empty. Names already in `target` stay as they are. Values that cannot be read, among
/// them those with a name over 1,023 or data over 1,024 bytes, are skipped. Throws a text when the key cannot
/// be read.
void enumerate_values(std::map<std::string, std::string>& target, HKEY root, const std::string& path);
