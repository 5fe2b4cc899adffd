#pragma once
/// A configuration of many settings that all change at once, so that writing them takes a while.
#include "e2e/tool.h"

#include <string>

namespace soak {

class ManyValues {
public:
    explicit ManyValues(int number_of_values) : count(number_of_values) {}

    /// Makes it the program's only configuration; `service` may be empty.
    void describe(const std::string& service) const;

    /// Gives every value in the registry its old text.
    void make_old() const;
    /// Gives every setting its new text, in the program's window.
    void edit_all(e2e::Tool& tool) const;
    /// How many values in the registry have their new text; throws std::runtime_error when one has neither.
    int count_new() const;
    /// Throws unless the program shows what the registry holds: in the first, a middle and the last setting.
    void expect_shown(e2e::Tool& tool) const;
    /// Gives the first setting a text of its own, in the program's window.
    void edit_first(e2e::Tool& tool, const std::string& text) const;

    int size() const { return count; }
    std::string first_value() const;

private:
    HTREEITEM first_item(e2e::Tool& tool) const;

    int count;
};

/// Notices the first value that is written after its construction.
class FirstWrite {
public:
    FirstWrite();
    ~FirstWrite();
    FirstWrite(const FirstWrite&) = delete;
    FirstWrite& operator=(const FirstWrite&) = delete;
    /// Waits for it; false when `process` ends before.
    bool wait(HANDLE process) const;

private:
    HKEY key = nullptr;
    HANDLE written;
};

} // namespace soak
