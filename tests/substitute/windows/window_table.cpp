#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/window.h"

#include <cstdlib>

namespace substitute {
namespace {

/// A handle is a slot's number and how often the slot was used, so that a stale handle never finds the
/// window that came after its own. Handles of windows are even on Windows, too.
constexpr unsigned slot_bits = 17;
constexpr ULONG_PTR slot_mask = (ULONG_PTR{1} << slot_bits) - 1;
constexpr ULONG_PTR most_uses = (ULONG_PTR{1} << (31 - slot_bits)) - 1;

struct Slot {
    ULONG_PTR uses = 0;
    std::unique_ptr<Window> window;
};

struct Table {
    std::vector<Slot> slots = std::vector<Slot>(1);
    std::vector<std::size_t> free;
    Window desktop;
};

Table& table() {
    static Table instance;
    return instance;
}

HWND make_handle(std::size_t slot, ULONG_PTR uses) {
    return reinterpret_cast<HWND>(((uses & most_uses) << (slot_bits + 1)) | (slot << 1));
}

Window* look_up(HWND handle) {
    const auto slot = (reinterpret_cast<ULONG_PTR>(handle) >> 1) & slot_mask;
    auto& slots = table().slots;
    if (slot >= slots.size() || slots[slot].window == nullptr || slots[slot].window->handle != handle)
        return nullptr;
    return slots[slot].window.get();
}

std::size_t take_slot() {
    Table& now = table();
    if (now.free.empty()) {
        now.slots.emplace_back();
        return now.slots.size() - 1;
    }
    const std::size_t slot = now.free.back();
    now.free.pop_back();
    return slot;
}

/// The head of the list of siblings: the parent, or the desktop.
Window& head_of(const Window& window) {
    Window* parent = is_child(window) ? look_up(window.parent) : nullptr;
    return parent == nullptr ? table().desktop : *parent;
}

std::vector<HWND> list_from(HWND first) {
    std::vector<HWND> handles;
    for (HWND each = first; each != nullptr; each = existing_window(each).next)
        handles.push_back(each);
    return handles;
}

/// The counts of uses stay, so that a handle from before a reset is stale afterwards, too.
void forget_all() {
    Table& now = table();
    now.free.clear();
    now.desktop.first_child = now.desktop.last_child = nullptr;
    for (std::size_t number = now.slots.size(); --number > 0;) {
        now.slots[number].window.reset();
        now.free.push_back(number);
    }
}

const ResetHook reset_hook(forget_all);

} // namespace

Window* window_of(HWND handle) {
    Window* found = look_up(handle);
    if (found == nullptr)
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
    return found;
}

Window& existing_window(HWND handle) {
    Window* found = look_up(handle);
    if (found == nullptr)
        std::abort();
    return *found;
}

std::vector<HWND> children_of(HWND handle) {
    const Window* window = look_up(handle);
    return window == nullptr ? std::vector<HWND>() : list_from(window->first_child);
}

std::vector<HWND> top_level_windows() { return list_from(table().desktop.first_child); }

Window& add_window() {
    const std::size_t number = take_slot();
    Slot& slot = table().slots[number];
    ++slot.uses;
    slot.window = std::make_unique<Window>();
    slot.window->handle = make_handle(number, slot.uses);
    return *slot.window;
}

void link_window(Window& window) {
    Window& head = head_of(window);
    window.previous = head.last_child;
    window.next = nullptr;
    (head.last_child == nullptr ? head.first_child : existing_window(head.last_child).next) = window.handle;
    head.last_child = window.handle;
}

void unlink_window(Window& window) {
    Window& head = head_of(window);
    (window.previous == nullptr ? head.first_child : existing_window(window.previous).next) = window.next;
    (window.next == nullptr ? head.last_child : existing_window(window.next).previous) = window.previous;
    window.previous = window.next = nullptr;
}

void forget_window(HWND handle) {
    const auto number = (reinterpret_cast<ULONG_PTR>(handle) >> 1) & slot_mask;
    table().slots[number].window.reset();
    table().free.push_back(number);
}

} // namespace substitute
