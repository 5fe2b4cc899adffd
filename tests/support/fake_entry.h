#pragma once
/// An entry without controls whose store is three flags, for tests of code that handles entries from outside.
#include "pages/base_entry.h"

#include <functional>
#include <string_view>
#include <utility>

class FakeEntry : public BaseEntry {
public:
    explicit FakeEntry(std::string_view title) : BaseEntry(title) {}
    virtual ~FakeEntry() = default;

    bool is_changed = false;
    /// Whether the page's "control" holds a change that takeValue will find.
    bool edited = false;
    int writes = 0;
    std::function<void()> on_write = [] {};

    void read() override {}
    void write() override {
        ++writes;
        on_write();
        is_changed = false;
    }
    bool changed() const override { return is_changed; }
    void createControls(HWND) override {}
    void destroyControls(HWND) override {}
    void layout(HWND) override {}
    void showValue() override {}
    void takeValue() override { is_changed = is_changed || std::exchange(edited, false); }
};
