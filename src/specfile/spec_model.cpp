#include "specfile/spec_model.h"

#include <algorithm>
#include <utility>

namespace {

/// The window also stops reading here.
std::unique_ptr<const std::string> up_to_its_end(std::string octets) {
    octets.erase(std::min(octets.find('\x1A'), octets.size()));
    return std::make_unique<const std::string>(std::move(octets));
}

} // namespace

SpecModel::SpecModel(std::string octets) : text(up_to_its_end(std::move(octets))) {
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
