// GLib's key file: it loads the whole file into its own records, from which the model is built.
#include "parse/settings.h"

#include <glib.h>

#include <stdexcept>

namespace parse {
namespace {

struct Free {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
    void operator()(char** list) const { g_strfreev(list); }
    void operator()(char* text) const { g_free(text); }
};
using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Texts = std::unique_ptr<char*[], Free>;
using Text = std::unique_ptr<char, Free>;

void expect(bool good) {
    if (!good)
        throw std::runtime_error("GLib does not take the text");
}

void take_group(GKeyFile* loaded, const char* group, Model& model) {
    const Texts keys(g_key_file_get_keys(loaded, group, nullptr, nullptr));
    for (char** key = keys.get(); *key != nullptr; ++key) {
        // Raw, because these files have no escapes.
        const Text value(g_key_file_get_value(loaded, group, *key, nullptr));
        expect(take(model, group, *key, value.get()));
    }
}

Model model_of(GKeyFile* loaded) {
    Model model;
    const Texts groups(g_key_file_get_groups(loaded, nullptr));
    for (char** group = groups.get(); *group != nullptr; ++group)
        take_group(loaded, *group, model);
    return model;
}

void give(const Model& model, std::string* described) {
    if (described != nullptr)
        *described = description(model);
}

KeyFile load(const std::string& text) {
    KeyFile loaded(g_key_file_new());
    expect(g_key_file_load_from_data(loaded.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr));
    return loaded;
}

void from_text(const std::string& text, std::string* described) {
    give(model_of(load(text).get()), described);
}

void from_file(const std::string& path, std::string* described) {
    const KeyFile loaded(g_key_file_new());
    expect(g_key_file_load_from_file(loaded.get(), path.c_str(), G_KEY_FILE_NONE, nullptr));
    give(model_of(loaded.get()), described);
}

/// The model alone: the parser's own records can be let go.
std::size_t memory(const std::string& text) {
    const KeyFile loaded = load(text);
    const std::size_t before = allocated();
    const Model model = model_of(loaded.get());
    return allocated() - before;
}

} // namespace

const Parser glib_parser = {"GLib key file", from_text, from_file, memory};

} // namespace parse
