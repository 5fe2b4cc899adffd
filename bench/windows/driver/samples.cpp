#include "driver/samples.h"

#include <fstream>
#include <stdexcept>

namespace bench {

void Samples::add(const std::string& work, const std::string& program, const char* unit, double value) {
    auto& [known_unit, values] = values_[work + "/" + program];
    known_unit = unit;
    values.push_back(value);
}

void Samples::write(const std::string& path) const {
    std::ofstream file(path);
    const char* separator = "{\"samples\": [\n";
    for (const auto& [name, sample] : values_) {
        file << separator << R"({"name": ")" << name << R"(", "unit": ")" << sample.first
             << R"(", "values": [)";
        const char* comma = "";
        for (const double value : sample.second) {
            file << comma << value;
            comma = ", ";
        }
        file << "]}";
        separator = ",\n";
    }
    file << "\n]}\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace bench
