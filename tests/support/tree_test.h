#pragma once
/// A tree view in a window of the tests, and its notifications.
#include "support/test_window.h"

#include <string>
#include <vector>

inline constexpr int selection_changing = static_cast<int>(TVN_SELCHANGINGA);
inline constexpr int selection_changed = static_cast<int>(TVN_SELCHANGEDA);

class TreeViewTest : public TestWindow {
protected:
    void SetUp() override;

    /// root (group (first, second)), other
    void fill();
    HTREEITEM insert(HTREEITEM parent, HTREEITEM after, const char* text);
    HTREEITEM next(WPARAM which, HTREEITEM from = nullptr) const;
    HTREEITEM selected() const { return next(TVGN_CARET); }
    LRESULT select(HTREEITEM item);
    LRESULT expand(HTREEITEM item, WPARAM how = TVE_EXPAND);
    bool is_expanded(HTREEITEM item) const;
    std::string text(HTREEITEM item) const;
    /// The notifications about selections since the last call.
    std::vector<int> notified();

    HWND tree = nullptr;
    HTREEITEM root = nullptr;
    HTREEITEM group = nullptr;
    HTREEITEM first = nullptr;
    HTREEITEM second = nullptr;
    HTREEITEM other = nullptr;

private:
    std::size_t known_ = 0;
};
