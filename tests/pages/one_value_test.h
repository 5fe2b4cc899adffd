#pragma once
/// A page over one registry value of the tests' key, called "Value".
#include "pages/test_key.h"
#include "store/common_reg_key.h"
#include "support/page.h"

#include <memory>
#include <string>
#include <utility>

class OneValueTest : public SpecKeyTest {
protected:
    static CommonRegKey binding() { return {test_key, "Value", true}; }

    /// What the registry holds, as text.
    static std::string stored() { return binding().value(); }

    StandInMainWindow main{436, 229};
};

/// The same for a kind of entry that is made of the binding, title and help text alone.
template <typename Entry> class OneEntryTest : public OneValueTest {
protected:
    /// Makes the entry, after the registry got this value, and shows its page.
    void show(const std::string& value) {
        set_text("Value", value);
        show();
    }
    void show() {
        entry = std::make_unique<Entry>(binding(), title_and_help);
        entry->select(main.window());
    }
    HWND control() const { return main.control(1); }
    /// The current value once the page is left.
    std::string left() {
        entry->deselect(main.window());
        return entry->value();
    }

    std::unique_ptr<Entry> entry;
};
