#pragma once
/// Windows that record the messages that they receive, in one common list.
#include "platform/win32.h"
#include "support/system.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

class RecorderTest : public CleanSystem {
protected:
    void SetUp() override;
    void TearDown() override;

    /// A window whose name is its text; null when creation fails.
    HWND open(const std::string& name, DWORD style, HWND parent = nullptr);
    /// A visible child of 100 by 50.
    HWND open_child(const std::string& name, HWND parent) {
        return open(name, WS_CHILD | WS_VISIBLE, parent);
    }
    /// Records these messages from now on, as "name message", and clears the list.
    void watch(std::vector<UINT> messages);
    /// Returns the list and clears it.
    std::vector<std::string> take_log();
    /// Answers this message instead of the default; the result is the message's.
    void answer(UINT message, std::function<LRESULT(HWND, WPARAM, LPARAM)> result) {
        answers[message] = std::move(result);
    }

    std::map<UINT, std::function<LRESULT(HWND, WPARAM, LPARAM)>> answers;

private:
    static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam);

    std::vector<UINT> watched_;
    std::vector<std::string> log_;
    std::vector<HWND> opened_;
};
