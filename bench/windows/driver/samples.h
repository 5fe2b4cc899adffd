#pragma once
/// What was measured, for bench/table.py.
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// The programs that are compared; the names are those of bench/goals.py.
inline constexpr char ours[] = "tavrinconfig";
inline constexpr char bare[] = "bare program";
inline constexpr char prescribed[] = "the prescribed calls";
inline constexpr char prescribed_without_windows[] = "these without windows";

class Samples {
public:
    /// `unit` is "s" or "B".
    void add(const std::string& work, const std::string& program, const char* unit, double value);
    /// Throws std::runtime_error when the file cannot be written.
    void write(const std::string& path) const;

private:
    std::map<std::string, std::pair<std::string, std::vector<double>>> values_;
};

} // namespace bench
