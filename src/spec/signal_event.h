#pragma once
/// A button that sets a named event, so that a running agent acts; it has no value.
#include "spec/single_control_entry.h"
#include "store/data_manipulator.h"

#include <string>

class SignalEvent final : public SingleControlEntry, public NoDataManipulator {
public:
    SignalEvent(std::string event_name, std::string_view title, std::string_view help_text);

    void showValue() override {}
    void takeValue() override {}
    /// Throws error::ESystemError when the event cannot be set.
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

private:
    void signal() const;

    std::string event_name_;
};
