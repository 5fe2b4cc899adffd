// inih, through its C functions: its results go directly into the model.
#include "parse/settings.h"

#include <ini.h>

#include <stdexcept>

namespace parse {
namespace {

int take_one(void* model, const char* section, const char* name, const char* value) {
    return take(*static_cast<Model*>(model), section, name, value) ? 1 : 0;
}

void expect_success(int result) {
    if (result != 0)
        throw std::runtime_error("inih does not take line " + std::to_string(result));
}

void give(const Model& model, std::string* described) {
    if (described != nullptr)
        *described = description(model);
}

void from_text(const std::string& text, std::string* described) {
    Model model;
    expect_success(ini_parse_string(text.c_str(), take_one, &model));
    give(model, described);
}

void from_file(const std::string& path, std::string* described) {
    Model model;
    expect_success(ini_parse(path.c_str(), take_one, &model));
    give(model, described);
}

std::size_t memory(const std::string& text) {
    const std::size_t before = allocated();
    Model model;
    expect_success(ini_parse_string(text.c_str(), take_one, &model));
    return allocated() - before;
}

} // namespace

const Parser inih_parser = {"inih", from_text, from_file, memory};

} // namespace parse
