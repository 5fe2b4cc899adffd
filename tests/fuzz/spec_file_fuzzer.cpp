/// Parses a spec file in both modes; the result must be the same as that of a simple reading of the format
/// over a standard stream, line by line, with a key that can be read only where the registry has one.
#include "fuzz/input.h"
#include "pages/building.h"
#include "pages/configuration.h"
#include "substitute/control.h"
#include "support/kinds.h"
#include "support/spec_text.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace {

/// Everything that a parse gives, as one text.
std::string outcome(const Configuration& parsed) {
    return parsed.registryPath + '\n' + parsed.name + '\n' + parsed.serviceName + '\n' + describe(parsed) +
           (parsed.offersConnectionTest ? "test\n" : "") + parsed.agent_name_title + '\n' +
           parsed.agent_domain_title + '\n' + parsed.server_list_title + '\n' + parsed.default_port_title;
}

std::string parsed_outcome(const std::string& text, bool test_only) {
    try {
        return outcome(*parse(text, test_only));
    } catch (const std::string& thrown) {
        return "thrown: " + thrown;
    }
}

class PlainReading {
public:
    PlainReading(const std::string& text, bool test_only) : in_(text), test_only_(test_only) {}

    std::string outcome() {
        try {
            read_file();
        } catch (const std::string& thrown) {
            return "thrown: " + thrown;
        }
        return path_ + '\n' + name_ + '\n' + service_ + '\n' + groups_ + (offers_test_ ? "test\n" : "") +
               titles_[0] + '\n' + titles_[1] + '\n' + titles_[2] + '\n' + titles_[3];
    }

private:
    bool read(std::string& line) {
        line.clear();
        if (!std::getline(in_, line))
            return false;
        if (!in_.eof() && !line.empty() && line.back() == '\r')
            line.pop_back();
        return true;
    }
    std::string read() {
        std::string line;
        read(line);
        return line;
    }
    bool next_is(char first) { return in_.peek() == first; }

    void read_file() {
        path_ = read();
        while (!path_.empty() && path_[0] == '\\')
            path_.erase(0, 1);
        old_ = next_is('!') || next_is('$');
        name_ = old_ ? "From registry" : read();
        while (in_.good())
            read_group();
    }

    void read_group() {
        if (old_ && next_is('$')) {
            groups_ += "!\n";
            read_subspecs();
        }
        std::string line;
        if (!read(line) || line.empty())
            return;
        if (line[0] == '!') {
            groups_ += line + "\n";
            return read_subspecs();
        }
        if (!service_.empty())
            throw "Parse error: line \"" + line + "\" not group start";
        service_ = line;
    }

    void read_subspecs() {
        while (in_.good() && next_is('$'))
            read_subspec();
    }

    std::string read_type() {
        if (old_ && (next_is('!') || next_is('$') || in_.peek() == EOF))
            return "Integer";
        return read();
    }

    void read_subspec() {
        const std::string title = read().substr(1);
        const std::string value_name = read();
        const std::string help = read();
        const std::string type = read_type();
        const PageKind* const kind = find_page_kind(type);
        const More more = kind == nullptr ? More::nothing : kind->more;
        if (more == More::options) {
            while (in_.good() && !next_is('$') && !next_is('!'))
                read();
        } else if (more == More::extension) {
            if (in_.good() && !next_is('$') && !next_is('!'))
                read();
        } else if (type == "ConnectionTest") {
            offers_test_ = true;
            for (std::string& each : titles_)
                each = read();
            return;
        }
        add(type, title, help);
    }

    void add(const std::string& type, const std::string& title, const std::string& help) {
        const PageKind* const kind = find_page_kind(type);
        if (kind == nullptr && test_only_)
            throw "Unknown type: \"" + type + "\", for subspec " + title;
        if (kind == nullptr || (test_only_ && !kind->for_connection_test))
            return;
        if (!test_only_ && kind->has_value() && !path_opens())
            throw "Cannot open path \"" + path_ + "\" for reading";
        groups_.append(described_as(*kind)).append("|").append(title).append("|").append(help).append("\n");
    }

    /// Kinds that share a class of entries are described as the first of them.
    static const char* described_as(const PageKind& kind) {
        return std::find_if(page_kinds.begin(), page_kinds.end(),
                            [&](const PageKind& each) { return std::string_view(each.entry) == kind.entry; })
            ->type;
    }

    bool path_opens() const {
        HKEY key = nullptr;
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path_.c_str(), 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
            return false;
        RegCloseKey(key);
        return true;
    }

    std::istringstream in_;
    bool test_only_;
    bool old_ = false;
    std::string path_;
    std::string name_;
    std::string service_;
    std::string groups_;
    bool offers_test_ = false;
    std::string titles_[4];
};

void make_key(const char* path) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_LOCAL_MACHINE, path, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ, nullptr, &key,
                    nullptr);
    RegCloseKey(key);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    substitute::reset();
    make_key("K");
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const bool test_only : {false, true})
        require(parsed_outcome(text, test_only) == PlainReading(text, test_only).outcome());
    require(substitute::open_keys() == 0);
    return 0;
}
