#pragma once
/// The entries without a value, which do something: delete a key on OK, signal an event at once.
#include "pages/base_entry.h"
#include "store/data_manipulator.h"
#include "store/delete_reg_key.h"

#include <string>
#include <string_view>

/// A checkbox that asks for a whole registry key to be deleted.
class DeleteKey final : public SingleControlEntry, public DeleteRegKey {
public:
    DeleteKey(DeleteRegKey binding, std::string_view subspec);

    /// If the key does not exist, the box is disabled and is not read.
    void showValue() override;
    void takeValue() override;
};

/// A button that sets a named event, so that a running agent acts.
class SignalEvent final : public SingleControlEntry, public NoDataManipulator {
public:
    SignalEvent(std::string event_name, std::string_view subspec);

    void showValue() override {}
    void takeValue() override {}
    /// Throws error::ESystemError when the event cannot be set.
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

private:
    void signal() const;

    std::string event_name_;
};
