#include "ctl/io/encoding.h"

#include <iconv.h>

#include <cerrno>
#include <clocale>
#include <cstring>
#include <cwctype>

namespace ctl {
namespace {

constexpr unsigned utf8 = 65001;
constexpr unsigned western_europe = 1252;

class Converter {
public:
    Converter(const std::string& to, const std::string& from)
        : converter_(iconv_open(to.c_str(), from.c_str())) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (*this)
            iconv_close(converter_);
    }

    explicit operator bool() const { return converter_ != reinterpret_cast<iconv_t>(-1); }

    /// Converts from the start of `text`, which loses what was converted. False where it cannot go on.
    bool convert(std::string_view& text, std::string& converted) const {
        char* from = const_cast<char*>(text.data()); // iconv does not write there
        std::size_t left = text.size();
        char chunk[4096];
        std::size_t result = 0;
        do {
            char* to = chunk;
            std::size_t room = sizeof chunk;
            result = iconv(converter_, &from, &left, &to, &room);
            converted.append(chunk, to);
        } while (result == static_cast<std::size_t>(-1) && errno == E2BIG);
        text = {from, left};
        return left == 0;
    }

private:
    iconv_t converter_;
};

std::string name_of(unsigned code_page) {
    return code_page == utf8 ? "UTF-8" : "CP" + std::to_string(code_page);
}

} // namespace

unsigned machine_code_page() { return western_europe; }

bool is_code_page(unsigned code_page) { return static_cast<bool>(Converter("UTF-8", name_of(code_page))); }

std::string to_utf8(std::string_view text, unsigned code_page) {
    if (code_page == machine_code_page() && is_ascii(text))
        return std::string(text);
    const Converter converter("UTF-8", name_of(code_page));
    std::string converted;
    while (!converter.convert(text, converted)) {
        converted += "\xEF\xBF\xBD";
        text.remove_prefix(1);
    }
    return converted;
}

std::optional<std::string> from_utf8(std::string_view text, unsigned code_page) {
    if (code_page == machine_code_page() && is_ascii(text))
        return std::string(text);
    std::string converted;
    if (!Converter(name_of(code_page), "UTF-8").convert(text, converted))
        return std::nullopt;
    return converted;
}

/// Letters beyond ASCII keep their case on a system without this locale, which comes with the C library.
std::string in_one_case(std::string_view text) {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    std::string wide;
    Converter("WCHAR_T", "UTF-8").convert(text, wide);
    for (std::size_t i = 0; locale != nullptr && i < wide.size(); i += sizeof(wchar_t)) {
        wchar_t character = 0;
        std::memcpy(&character, wide.data() + i, sizeof character);
        character = static_cast<wchar_t>(towupper_l(static_cast<wint_t>(character), locale));
        std::memcpy(wide.data() + i, &character, sizeof character);
    }
    std::string_view rest = wide;
    std::string converted;
    Converter("UTF-8", "WCHAR_T").convert(rest, converted);
    return converted;
}

std::string to_utf16(std::string_view text) {
    std::string converted;
    Converter("UTF-16LE", "UTF-8").convert(text, converted);
    return converted;
}

std::string from_utf16(std::string_view octets) {
    std::string converted;
    Converter("UTF-8", "UTF-16LE").convert(octets, converted);
    return converted;
}

} // namespace ctl
