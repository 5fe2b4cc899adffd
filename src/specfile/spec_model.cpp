#include "specfile/spec_model.h"

#include <utility>

namespace {

/// The window also stops reading here.
std::unique_ptr<const std::string> up_to_its_end(std::string octets) {
    octets.resize(up_to_end_of_text(octets).size());
    return std::make_unique<const std::string>(std::move(octets));
}

} // namespace

SpecModel::SpecModel(std::string octets) : text(up_to_its_end(std::move(octets))) {
    if (auto error = line_end_error(*text))
        errors.push_back(std::move(*error));
    SpecReader reader(*text);
    registry_path = reader.registry_path();
    is_old = reader.is_old();
    name = reader.name();
    while (const auto statement = reader.next())
        std::visit([this](const auto& each) { take(each); }, *statement);
}

void SpecModel::take(const Declaration& declaration) {
    if (declaration.kind == nullptr) {
        unknown_types.push_back(unknown_type(declaration));
    } else {
        entries.push_back({declaration, groups.size() - 1});
    }
}
