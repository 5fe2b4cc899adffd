#pragma once
#include <string>

/// The text (std::string) that `action` throws; "nothing thrown" when it throws nothing. Anything else that
/// it throws fails the test.
template <typename Action> std::string thrown_text(Action action) {
    try {
        action();
    } catch (const std::string& text) {
        return text;
    }
    return "nothing thrown";
}
