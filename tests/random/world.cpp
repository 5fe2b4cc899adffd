#include "random/world.h"

#include "support/registry.h"

#include <algorithm>

namespace random_user {

namespace {

const std::vector<std::string> title_pool = {"Name",  "Domain", "Servers", "Port", "Name",  "Flag",
                                             "Level", "A && B", "",        "Port", "Folder"};
const std::vector<std::string> name_pool = {"Agent", "Tray", "Legacy", "agent", "", "Agent"};
const std::vector<std::string> help_pool = {"", "What this is for.",
                                            "A long help text. A long help text. A long help text."};
const std::vector<std::string> option_pool = {"low", "high", "", "Low", "COM1", "true", "5000"};
const std::vector<std::string> value_pool = {"",       "web1", "5000",     "0x10",      "010",
                                             " 42abc", "-",    "-5",       "+7",        "99999999999",
                                             "TRUE",   "true", "false",    "False",     "1",
                                             "yes",    "low",  "high",     "Low",       "COM1",
                                             "COM2",   "C:\\", "a,b",      "08",        " low",
                                             "low ",   "web2", "C:\\temp", "127.0.0.1", "10.0.0.2:5001,web3"};

std::optional<RegistryData> make_data(Chance& chance) {
    switch (chance.below(12)) {
    case 0: return std::nullopt;
    case 1: return RegistryData{REG_DWORD, std::string("A\0\0\0", 4)};
    case 2: return RegistryData{REG_BINARY, "raw" + std::string(1, '\0') + "rest"};
    case 3: return RegistryData{REG_SZ, std::string(1000 + chance.below(60), 'x') + '\0'};
    case 4: return RegistryData{REG_SZ, chance.pick(value_pool)};
    default: return RegistryData{REG_SZ, chance.pick(value_pool) + '\0'};
    }
}

std::vector<std::string> make_options(Chance& chance) {
    std::vector<std::string> options(chance.below(5));
    for (std::string& option : options)
        option = chance.pick(option_pool);
    return options;
}

class Maker {
public:
    Maker(Chance& chance, const std::vector<std::string>& ports) : chance_(chance), ports_(ports) {}

    SpecFile file(unsigned number) {
        SpecFile made{};
        made.value_name = std::string(1, static_cast<char>('a' + chance_.below(4))) + std::to_string(number);
        made.is_missing = chance_.percent(4);
        made.groups.resize(chance_.percent(5) ? 0 : 1 + chance_.below(3));
        // Without a group, nothing marks a file as an old one.
        made.old_syntax = chance_.percent(40) && !made.groups.empty();
        made.line_end = chance_.percent(30) ? "\r\n" : "\n";
        made.key = "SOFTWARE\\TavrinTests\\User" + std::to_string(number);
        made.name = made.old_syntax ? made.value_name : chance_.pick(name_pool);
        if (chance_.percent(40))
            made.service = "UserService" + std::to_string(number);
        for (std::size_t index = 0; index < made.groups.size(); ++index)
            fill(made.groups[index], !made.old_syntax || index == 0);
        if (!made.groups.empty() && chance_.percent(60))
            made.test_titles = titles_of(made);
        return made;
    }

private:
    /// In an old file, the entries before the first "!" form a group without a name.
    void fill(Group& group, bool may_have_no_name) {
        group.name = may_have_no_name && chance_.percent(30) ? "" : "G" + std::to_string(chance_.below(3));
        group.entries.resize(1 + chance_.below(4));
        for (Entry& each : group.entries)
            each = entry();
    }

    Entry entry() {
        Entry made{};
        made.kind = &chance_.pick(page_kinds);
        made.title = chance_.pick(title_pool);
        made.help = chance_.pick(help_pool);
        made.value_name = "v" + std::to_string(++entries_);
        made.options = made.kind->lists_ports ? ports_ : make_options(chance_);
        made.data = make_data(chance_);
        made.key_exists = chance_.percent(60);
        return made;
    }

    /// Mostly those of entries that the file has.
    std::vector<std::string> titles_of(const SpecFile& file) {
        std::vector<std::string> titles;
        for (const char* usual : {"Name", "Domain", "Servers", "Port"}) {
            const Group& group = chance_.pick(file.groups);
            titles.push_back(chance_.percent(5) ? usual : chance_.pick(group.entries).title);
        }
        return titles;
    }

    Chance& chance_;
    const std::vector<std::string>& ports_;
    unsigned entries_ = 0;
};

class Writer {
public:
    explicit Writer(const SpecFile& file) : file_(file) {}

    std::string text() {
        line("\\\\" + file_.key);
        if (!file_.old_syntax) {
            line(file_.name);
            if (!file_.service.empty())
                line(file_.service);
        }
        for (const Group& group : file_.groups)
            add(group);
        if (file_.test_titles)
            add_test();
        if (file_.old_syntax && !file_.service.empty())
            add_service_at_end();
        return text_;
    }

private:
    void line(const std::string& content) { text_ += content + file_.line_end; }

    void add(const Group& group) {
        if (!file_.old_syntax || !group.name.empty())
            line("!" + group.name);
        for (const Entry& entry : group.entries)
            add(entry, &entry == &group.entries.back());
    }

    void add(const Entry& entry, bool is_last) {
        line("$" + entry.title);
        line(entry.value_name);
        line(entry.help);
        // In an old file, what has no type is a number, as long as another "$" or "!" follows.
        if (!file_.old_syntax || is_last || entry.kind->view != View::number)
            line(entry.kind->type);
        if (entry.kind->more == More::options) {
            for (const std::string& option : entry.options)
                line(option);
        }
        if (entry.kind->more == More::extension)
            line("log");
    }

    void add_test() {
        line("$Connection test");
        line("");
        line("");
        line("ConnectionTest");
        for (const std::string& title : *file_.test_titles)
            line(title);
    }

    /// A blank line ends the group, and what then stands there alone is the service.
    void add_service_at_end() {
        line("");
        line(file_.service);
    }

    const SpecFile& file_;
    std::string text_;
};

/// A list of options goes on to the next "$" or "!", so no service can follow it.
void keep_service_readable(SpecFile& file) {
    if (file.groups.empty() || (file.old_syntax && !file.test_titles &&
                                file.groups.back().entries.back().kind->more == More::options))
        file.service.clear();
}

void put_into_registry(const std::string& key, const Entry& entry) {
    if (entry.kind->view == View::removal && entry.key_exists)
        make_key(key + "\\" + entry.value_name);
    if (entry.kind->view != View::removal && entry.kind->view != View::nothing && entry.data)
        set_value(key, entry.value_name, entry.data->type, entry.data->bytes);
}

} // namespace

World make_world(Chance& chance, const std::vector<std::string>& ports) {
    World world;
    world.ports = ports;
    Maker maker(chance, world.ports);
    const unsigned count = 1 + chance.below(3);
    for (unsigned number = 0; number < count; ++number) {
        world.files.push_back(maker.file(number));
        keep_service_readable(world.files.back());
    }
    return world;
}

std::vector<std::string> make_ports(Chance& chance) {
    const std::vector<std::vector<std::string>> choices = {{}, {"COM1"}, {"COM1", "COM10", "COM2"}};
    return chance.pick(choices);
}

std::string text_of(const SpecFile& file) { return Writer(file).text(); }

void fill_registry(const World& world) {
    for (const SpecFile& file : world.files) {
        make_key(file.key);
        for (const Group& group : file.groups) {
            for (const Entry& entry : group.entries)
                put_into_registry(file.key, entry);
        }
    }
}

} // namespace random_user
