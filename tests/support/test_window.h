#pragma once
/// A window of the tests that records its messages.
#include "platform/win32.h"
#include "support/system.h"

#include <functional>
#include <string>
#include <vector>

struct Told {
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
};

/// Opens a top-level window, visible and active, and keeps every message that its procedure sees.
class TestWindow : public CleanSystem {
protected:
    void SetUp() override;
    void TearDown() override;

    /// A control in the window, visible unless `style` says WS_DISABLED only; ids count from 1.
    HWND add(const char* class_name, DWORD style, const char* text = "", DWORD extended_style = 0);
    HWND add_to(HWND parent, const char* class_name, DWORD style, const char* text = "",
                DWORD extended_style = 0);
    void forget() { told.clear(); }
    /// How often the window got `message`.
    int count(UINT message) const;
    /// Notification codes of the WM_COMMAND messages from `control`, in order.
    std::vector<int> commands(HWND control) const;
    /// Codes of the WM_NOTIFY messages from `control`, in order.
    std::vector<int> notifications(HWND control) const;

    HWND window = nullptr;
    std::vector<Told> told;
    /// When set, answers WM_NOTIFY.
    std::function<LRESULT(const NMHDR&)> answer_notify;

private:
    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT handle(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);

    std::vector<std::pair<HWND, UINT>> notified_;
    int next_id_ = 1;
};

std::string text_of(HWND window);
/// The window's rectangle in its parent's client coordinates.
RECT place_of(HWND window);
POINT client_size_of(HWND window);
