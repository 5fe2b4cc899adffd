#include "ctl/io/encoding.h"

#include "ctl/io/windows/encoding.h"
#include "platform/win32.h"

#include <cstring>

namespace ctl {
namespace {

/// `flags` are those of MultiByteToWideChar. Empty for what the flags refuse.
std::wstring decode(std::string_view text, unsigned code_page, DWORD flags) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(code_page, flags, text.data(), size, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(code_page, flags, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

/// Sets `*lost` if a character has no place in the code page; never for UTF-8.
std::string encode(const std::wstring& wide, unsigned code_page, BOOL* lost) {
    const int size = static_cast<int>(wide.size());
    // For UTF-8, which loses nothing, the call accepts neither the flag nor the answer.
    const bool all_fit = code_page == CP_UTF8;
    const DWORD flags = all_fit ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL* const answer = all_fit ? nullptr : lost;
    std::string text(static_cast<std::size_t>(WideCharToMultiByte(code_page, flags, wide.data(), size,
                                                                  nullptr, 0, nullptr, answer)),
                     '\0');
    WideCharToMultiByte(code_page, flags, wide.data(), size, text.data(), static_cast<int>(text.size()),
                        nullptr, answer);
    return text;
}

} // namespace

unsigned machine_code_page() { return GetACP(); }

bool is_code_page(unsigned code_page) { return IsValidCodePage(code_page) != FALSE; }

std::string to_utf8(std::string_view text, unsigned code_page) {
    if (code_page == machine_code_page() && is_ascii(text))
        return std::string(text);
    return from_wide(decode(text, code_page, 0));
}

std::optional<std::string> from_utf8(std::string_view text, unsigned code_page) {
    if (code_page == machine_code_page() && is_ascii(text))
        return std::string(text);
    const std::wstring wide = decode(text, CP_UTF8, MB_ERR_INVALID_CHARS);
    if (wide.empty() && !text.empty())
        return std::nullopt;
    BOOL lost = FALSE;
    std::string encoded = encode(wide, code_page, &lost);
    // Some code pages have characters that are decoded as others.
    if (lost || decode(encoded, code_page, 0) != wide)
        return std::nullopt;
    return encoded;
}

std::string in_one_case(std::string_view text) {
    std::wstring wide = decode(text, CP_UTF8, 0);
    CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    return from_wide(wide);
}

std::string to_utf16(std::string_view text) {
    const std::wstring wide = decode(text, CP_UTF8, 0);
    return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)};
}

std::string from_utf16(std::string_view octets) {
    std::wstring wide(octets.size() / sizeof(wchar_t), L'\0');
    std::memcpy(wide.data(), octets.data(), wide.size() * sizeof(wchar_t));
    return from_wide(wide);
}

std::wstring to_wide(const std::string& text) { return decode(text, CP_UTF8, 0); }

std::string from_wide(const std::wstring& text) { return encode(text, CP_UTF8, nullptr); }

} // namespace ctl
