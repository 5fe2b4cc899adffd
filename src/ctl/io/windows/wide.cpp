#include "ctl/io/windows/wide.h"

namespace ctl {

std::wstring decode(std::string_view text, unsigned code_page, DWORD flags) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(code_page, flags, text.data(), size, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(code_page, flags, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string encode(const std::wstring& wide, unsigned code_page, BOOL* lost) {
    const int size = static_cast<int>(wide.size());
    // For UTF-8 the call takes neither the flag nor the answer: it loses nothing.
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

std::wstring to_wide(const std::string& text) { return decode(text, CP_UTF8, 0); }

std::string from_wide(const std::wstring& text) { return encode(text, CP_UTF8, nullptr); }

} // namespace ctl
