// SimpleIni: it loads the whole file into its own records, from which the model is built.
#include "parse/settings.h"

// Only bytes are loaded: nothing is to be converted.
#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include <stdexcept>

namespace parse {
namespace {

using Names = CSimpleIniCaseA::TNamesDepend;

void expect(bool good) {
    if (!good)
        throw std::runtime_error("SimpleIni does not take the text");
}

void take_section(const CSimpleIniCaseA& loaded, const char* section, Model& model) {
    Names keys;
    loaded.GetAllKeys(section, keys);
    keys.sort(CSimpleIniCaseA::Entry::LoadOrder());
    for (const auto& key : keys)
        expect(take(model, section, key.pItem, loaded.GetValue(section, key.pItem)));
}

Model model_of(const CSimpleIniCaseA& loaded) {
    Model model;
    Names sections;
    loaded.GetAllSections(sections);
    sections.sort(CSimpleIniCaseA::Entry::LoadOrder());
    for (const auto& section : sections)
        take_section(loaded, section.pItem, model);
    return model;
}

void give(const Model& model, std::string* described) {
    if (described != nullptr)
        *described = description(model);
}

void from_text(const std::string& text, std::string* described) {
    CSimpleIniCaseA loaded;
    expect(loaded.LoadData(text) == SI_OK);
    give(model_of(loaded), described);
}

void from_file(const std::string& path, std::string* described) {
    CSimpleIniCaseA loaded;
    expect(loaded.LoadFile(path.c_str()) == SI_OK);
    give(model_of(loaded), described);
}

/// The model alone: the parser's own records can be let go.
std::size_t memory(const std::string& text) {
    CSimpleIniCaseA loaded;
    expect(loaded.LoadData(text) == SI_OK);
    const std::size_t before = allocated();
    const Model model = model_of(loaded);
    return allocated() - before;
}

} // namespace

const Parser simple_ini_parser = {"SimpleIni", from_text, from_file, memory};

} // namespace parse
