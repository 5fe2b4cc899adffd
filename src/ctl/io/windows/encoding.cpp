#include "ctl/io/encoding.h"

#include "ctl/io/windows/wide.h"
#include "platform/win32.h"

#include <cstring>

namespace ctl {

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
    // Some code pages have characters that read back as others.
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

} // namespace ctl
