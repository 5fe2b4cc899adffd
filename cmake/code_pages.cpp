// Writes the tables that a program on Linux takes along, as C++: Windows' code pages and the letters' cases.
// At run time iconv would look for its modules, and the C library for its locales, in the system's folders,
// where a bare machine has few and a static program can load none.
// usage: make_code_pages FILE
#include <iconv.h>

#include <clocale>
#include <cstdio>
#include <cwctype>
#include <fstream>
#include <optional>
#include <string>

namespace {

// What Windows machines have as their own: for its windows (ANSI) and its console (OEM).
constexpr unsigned numbers[] = {437,  737,  775,  850,  852,  855,  857,  858,  860, 861,
                                862,  863,  865,  866,  869,  874,  932,  936,  949, 950,
                                1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};

class CodePage {
public:
    explicit CodePage(unsigned number)
        : converter_(iconv_open("UTF-16LE", ("CP" + std::to_string(number)).c_str())) {}
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;
    ~CodePage() {
        if (known())
            iconv_close(converter_);
    }
    bool known() const { return converter_ != reinterpret_cast<iconv_t>(-1); }

    /// The one character that the octets stand for; nothing if they stand for none, or for more.
    std::optional<unsigned> character(std::string octets) const {
        char* from = octets.data();
        std::size_t left = octets.size();
        unsigned char wide[16] = {};
        char* to = reinterpret_cast<char*>(wide);
        std::size_t room = sizeof wide;
        iconv(converter_, nullptr, nullptr, nullptr, nullptr);
        const bool is_complete = iconv(converter_, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
        // A letter that may take an accent waits for what follows.
        iconv(converter_, nullptr, nullptr, &to, &room);
        if (!is_complete || room != sizeof wide - 2)
            return std::nullopt;
        return wide[0] | wide[1] << 8;
    }

private:
    iconv_t converter_;
};

std::string octets(unsigned value) {
    std::string text;
    if (value > 0xFF)
        text += static_cast<char>(value >> 8);
    return text += static_cast<char>(value & 0xFF);
}

/// Writes the characters of one code page in the order of their octets; false if it differs from ASCII.
bool write_characters(std::ofstream& file, const CodePage& page) {
    for (unsigned value = 1; value < 0x80; ++value)
        if (page.character(octets(value)) != value)
            return false;
    for (unsigned value = 0x80; value <= 0xFFFF; ++value)
        if (value <= 0xFF || (value >> 8 >= 0x80 && !page.character(octets(value >> 8))))
            if (const auto character = page.character(octets(value)))
                file << '{' << value << ',' << *character << "},\n";
    return true;
}

bool write_letters(std::ofstream& file) {
    if (!std::setlocale(LC_CTYPE, "C.UTF-8"))
        return false;
    file << "namespace {\nconstexpr Letter pairs[] = {\n";
    for (std::wint_t letter = 0x80; letter <= 0xFFFF; ++letter)
        if (const std::wint_t upper = std::towupper(letter); upper != letter && upper <= 0xFFFF)
            file << '{' << letter << ',' << upper << "},\n";
    file << "};\n}\nstd::span<const Letter> letters() { return pairs; }\n}\n";
    return file.flush().good();
}

bool write(std::ofstream& file) {
    file << "#include \"ctl/io/linux/code_pages.h\"\nnamespace ctl {\nnamespace {\n";
    for (const unsigned number : numbers) {
        const CodePage page(number);
        file << "constexpr CodePageCharacter page_" << number << "[] = {\n";
        if (!page.known() || !write_characters(file, page)) {
            std::fprintf(stderr, "make_code_pages: iconv's code page %u cannot be used\n", number);
            return false;
        }
        file << "};\n";
    }
    file << "constexpr CodePage all[] = {\n";
    for (const unsigned number : numbers)
        file << '{' << number << ", page_" << number << "},\n";
    file << "};\n}\nstd::span<const CodePage> code_pages() { return all; }\n";
    return write_letters(file);
}

} // namespace

int main(int, char** arguments) {
    std::ofstream file(arguments[1]);
    return write(file) ? 0 : 1;
}
