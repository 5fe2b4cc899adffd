#pragma once
#include "platform/win32.h"

#include <string>
#include <string_view>

namespace ctl {

/// The system's own form of a text in this code page; `flags` are those of MultiByteToWideChar. Empty for
/// what the flags refuse.
std::wstring decode(std::string_view text, unsigned code_page, DWORD flags);
/// The way back. Sets `*lost` when a character has no place in the code page; never for UTF-8.
std::string encode(const std::wstring& wide, unsigned code_page, BOOL* lost);

/// UTF-8 to the system's own texts and back. What is no UTF-8 becomes replacement characters.
std::wstring to_wide(const std::string& text);
std::string from_wide(const std::wstring& text);

} // namespace ctl
