#include "random/player.h"

#include "app/main_window_controls.h"

#include <algorithm>

namespace random_user {
namespace {

HTREEITEM next_item(HWND tree, WPARAM relation, HTREEITEM from) {
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(from)));
}

std::vector<HWND> children(HWND parent) {
    std::vector<HWND> found;
    for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
        found.push_back(child);
    return found;
}

std::string class_of(HWND window) {
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool is_frame(HWND window) {
    return class_of(window) == "Button" && (GetWindowLongPtrA(window, GWL_STYLE) & 0xF) == BS_GROUPBOX;
}

bool is_usable(HWND control) { return IsWindowVisible(control) && IsWindowEnabled(control); }

/// Whether the action needs the mouse outside an open list.
bool needs_mouse(Action action) {
    return action != Action::key && action != Action::text && action != Action::leave &&
           action != Action::shut;
}

bool presses(int key) { return key == VK_RETURN || key == VK_SPACE; }

} // namespace

HWND Player::tree() const { return GetDlgItem(desk_.window(), tree_id); }
HWND Player::button(int id) const { return GetDlgItem(desk_.window(), id); }
HTREEITEM Player::caret() const { return next_item(tree(), TVGN_CARET, nullptr); }

std::vector<Player::Page> Player::pages() const {
    std::vector<Page> found;
    for (const HWND frame : children(desk_.window())) {
        if (!is_frame(frame))
            continue;
        Page page{desk_.text_of(frame), "", children(frame)};
        if (!page.controls.empty()) {
            page.help = desk_.text_of(page.controls.front());
            page.controls.erase(page.controls.begin());
        }
        found.push_back(page);
    }
    return found;
}

Sight Player::sight_of(const Entry& entry, const Page& page) const {
    const HWND control = page.controls.front();
    switch (entry.kind->view) {
    case View::text:
    case View::number: return desk_.text_of(control);
    case View::check:
    case View::removal:
        if (!IsWindowEnabled(control))
            return "gone";
        return SendMessageA(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? "ticked" : "unticked";
    case View::list: {
        const LRESULT chosen = SendMessageA(control, CB_GETCURSEL, 0, 0);
        return chosen == CB_ERR ? "none" : std::to_string(chosen);
    }
    default: return "";
    }
}

void Player::play(const Step& step) {
    may_edit_ = may_close_item_ = false;
    wanted_focus_ = nullptr;
    pressed_ = {};
    most_boxes_ = {};
    if (needs_mouse(step.action) && list_is_open())
        return close_list();
    switch (step.action) {
    case Action::item: click_item(step); break;
    case Action::expander: click_expander(step); break;
    case Action::control: click_control(step); break;
    case Action::background: click_background(); break;
    case Action::key: press_key(step); break;
    case Action::text: type(step); break;
    case Action::test: click_button(test_connection_id, "Test Connection", step); break;
    case Action::ok: click_button(ok_id, "OK", step); break;
    case Action::close: click_button(close_id, "Close", step); break;
    case Action::leave:
        note("leaves for another program and comes back");
        keep_focus();
        desk_.leave_and_return();
        break;
    case Action::minimise: minimise(step); break;
    case Action::resize:
        note("resizes the window");
        keep_focus();
        desk_.resize(436 + static_cast<int>(step.number % 150), 229 + static_cast<int>(step.number % 100));
        break;
    case Action::shut:
        note("closes the window by its frame");
        end_ = End::discarded;
        desk_.shut();
        break;
    }
}

void Player::minimise(const Step& step) {
    note(std::string("minimises and restores the window") +
         (step.other_way ? ", while a window of another program comes and goes" : ""));
    keep_focus();
    if (step.other_way) {
        desk_.minimise_beside_another_window();
    } else {
        desk_.minimise_and_restore();
    }
}

bool Player::list_is_open() const {
    const std::vector<Page> shown = pages();
    return !shown.empty() && shown_ != nullptr && shown_->kind->view == View::list &&
           SendMessageA(shown.front().controls.front(), CB_GETDROPPEDSTATE, 0, 0) != 0;
}

void Player::close_list() {
    note("closes the list by a click elsewhere");
    desk_.click(desk_.window(), {3, 3});
}

/// Until the user has moved the focus, it may be anywhere.
void Player::keep_focus() { wanted_focus_ = went_somewhere_ ? desk_.focus() : nullptr; }

/// The items that are not inside a closed one, from top to bottom.
std::vector<std::size_t> Player::open_items() const {
    std::vector<std::size_t> found;
    HTREEITEM each = next_item(tree(), TVGN_ROOT, nullptr);
    for (std::size_t index = 0; index < handles_.size() && each != nullptr; ++index) {
        if (handles_[index] != each)
            continue;
        found.push_back(index);
        each = next_item(tree(), TVGN_NEXTVISIBLE, each);
    }
    return found;
}

void Player::click_item(const Step& step) {
    const std::vector<std::size_t> items = open_items();
    RECT place{};
    if (items.empty())
        return;
    const std::size_t index = items[step.number % items.size()];
    if (!desk_.find(handles_[index], place))
        return;
    note("clicks on item " + std::to_string(index) + " \"" + model_.items()[index].text + "\"");
    wanted_focus_ = tree();
    desk_.click(tree(), {place.left + 2, (place.top + place.bottom) / 2});
}

void Player::click_expander(const Step& step) {
    std::vector<std::size_t> items = open_items();
    std::erase_if(items, [&](std::size_t index) { return child_of(index) == nullptr; });
    if (items.empty())
        return;
    const std::size_t index = items[step.number % items.size()];
    const bool is_open = next_item(tree(), TVGN_NEXTVISIBLE, handles_[index]) == child_of(index);
    RECT place{};
    if ((is_open && !step.other_way) || !desk_.find(handles_[index], place))
        return;
    note(std::string(is_open ? "closes" : "opens") + " item " + std::to_string(index));
    may_close_item_ = is_open;
    wanted_focus_ = tree();
    desk_.click(tree(), {place.left - 10, (place.top + place.bottom) / 2});
}

HTREEITEM Player::child_of(std::size_t index) const { return next_item(tree(), TVGN_CHILD, handles_[index]); }

void Player::click_control(const Step& step) {
    const std::vector<Page> shown = pages();
    if (shown.empty() || shown.front().controls.empty())
        return;
    const auto& controls = shown.front().controls;
    const HWND control = controls[step.number % controls.size()];
    if (is_scan(control) && !desk_.scans_at_once())
        return;
    note("clicks on " + describe(control));
    may_edit_ = true;
    if (shown_ != nullptr && !shown_->kind->button().empty() && control == controls.back())
        press(control);
    wanted_focus_ = IsWindowEnabled(control) ? control : nullptr;
    RECT area{};
    GetClientRect(control, &area);
    click_and_remember(control, {std::min<LONG>(3, area.right - 1), area.bottom / 2});
    if (is_scan(control))
        grow_impatient(step, 2);
}

void Player::click_and_remember(HWND control, POINT where) {
    pressed_ = {control, where};
    desk_.click(control, where);
}

/// Repeated clicks during a test or a scan start no second one.
void Player::grow_impatient(const Step& step, std::size_t boxes) {
    const std::optional<std::size_t> shown = desk_.boxes_shown();
    if (!shown || failure_ || step.meanwhile != Meanwhile::nothing || step.number % 3 != 0)
        return;
    note("  and clicks on and on");
    most_boxes_ = *shown + boxes;
    for (int more = 0; more < 3; ++more)
        desk_.click(pressed_.control, pressed_.where);
}

/// The values that the user sees decide what the program will do.
void Player::press(HWND pressed) {
    if (!is_usable(pressed))
        return;
    if (pressed == button(ok_id))
        end_ = End::applied;
    if (pressed == button(close_id))
        end_ = End::discarded;
    if (pressed == button(test_connection_id) && selected_ != nullptr)
        failure_ = model_.test_failure(*selected_->file);
    if (is_scan(pressed) && selected_ != nullptr)
        failure_ = model_.scan_failure(*selected_->file);
    if (failure_)
        end_ = End::failed;
}

void Player::click_button(int id, const char* name, const Step& step) {
    const HWND pressed = button(id);
    if (!is_usable(pressed))
        return;
    note(std::string("presses ") + name);
    press(pressed);
    wanted_focus_ = pressed;
    RECT area{};
    GetClientRect(pressed, &area);
    click_and_remember(pressed, {area.right / 2, area.bottom / 2});
    if (id == test_connection_id)
        grow_impatient(step, 1);
}

void Player::click_background() {
    note("clicks beside all controls");
    keep_focus();
    desk_.click(desk_.window(), {3, 3});
}

void Player::press_key(const Step& step) {
    const HWND focus = desk_.focus();
    const bool with_shift = step.key == VK_TAB && step.other_way;
    if (presses(step.key) && is_scan(focus) && !desk_.scans_at_once())
        return;
    note("presses key " + std::to_string(step.key) + (with_shift ? " with Shift" : "") + " in " +
         describe(focus));
    may_edit_ = is_on_page(focus) && step.key != VK_TAB;
    may_close_item_ = focus == tree() && step.key == VK_LEFT;
    if (presses(step.key) && (GetWindowLongPtrA(focus, GWL_STYLE) & BS_TYPEMASK) == BS_PUSHBUTTON &&
        class_of(focus) == "Button")
        press(focus);
    desk_.press(step.key, with_shift);
}

/// In the tree each letter selects an item; items that are selected only in between are not checked.
void Player::type(const Step& step) {
    const HWND focus = desk_.focus();
    may_edit_ = is_on_page(focus);
    const bool as_a_whole = may_edit_ && class_of(focus) == "Edit";
    const std::string text = as_a_whole ? step.text : step.text.substr(0, 1);
    note("types \"" + text + "\" in " + describe(focus));
    if (text == " " && class_of(focus) == "Button")
        return;
    desk_.type(text);
}

std::string Player::look() {
    if (handles_.empty() && tree_fault_.empty())
        learn_items();
    std::string fault = tree_fault_ + fault_;
    if (fault.empty() && most_boxes_ && *desk_.boxes_shown() > *most_boxes_)
        fault = "impatient clicks brought more boxes";
    if (fault.empty())
        fault = follow_caret();
    if (fault.empty())
        fault = look_at_page();
    if (fault.empty())
        fault = look_at_buttons();
    return fault.empty() ? look_at_focus() : fault;
}

void Player::learn_items() {
    add_items(next_item(tree(), TVGN_ROOT, nullptr), 0, tree_fault_);
    if (handles_.size() != model_.items().size()) {
        tree_fault_ = "the tree has " + std::to_string(handles_.size()) + " items instead of " +
                      std::to_string(model_.items().size());
    }
}

void Player::add_items(HTREEITEM first, int depth, std::string& fault) {
    for (HTREEITEM each = first; each != nullptr; each = next_item(tree(), TVGN_NEXT, each)) {
        const std::size_t index = handles_.size();
        const std::string text = desk_.text_of(each);
        if (index >= model_.items().size() || model_.items()[index].text != text ||
            model_.items()[index].depth != depth)
            fault = "the tree's item " + std::to_string(index) + " is \"" + text + "\"";
        handles_.push_back(each);
        add_items(next_item(tree(), TVGN_CHILD, each), depth + 1, fault);
    }
}

/// If a parent of the selected item is closed, the parent becomes selected without a notification, so the
/// page stays.
std::string Player::follow_caret() {
    const HTREEITEM now = caret();
    newly_shown_ = now != caret_;
    if (!newly_shown_)
        return "";
    caret_ = now;
    const auto found = std::find(handles_.begin(), handles_.end(), now);
    if (found == handles_.end())
        return "an item is selected that the tree did not have";
    const Item& item = model_.items()[static_cast<std::size_t>(found - handles_.begin())];
    if (may_close_item_ && item.entry == nullptr && !pages().empty()) {
        newly_shown_ = false;
        return "";
    }
    selected_ = &item;
    shown_ = item.entry;
    return "";
}

std::string Player::look_at_page() {
    const std::vector<Page> found = pages();
    const std::size_t wanted = shown_ == nullptr ? 0 : 1;
    if (found.size() != wanted)
        return std::to_string(found.size()) + " pages are shown instead of " + std::to_string(wanted);
    if (shown_ == nullptr)
        return "";
    look_at_list();
    const Page& page = found.front();
    if (page.title != shown_->title || page.help != shown_->help)
        return "the page of \"" + page.title + "\" is shown instead of that of \"" + shown_->title + "\"";
    const bool has_value = shown_->kind->view != View::nothing;
    const bool has_button = !shown_->kind->button().empty();
    if (page.controls.size() != (has_value ? 1U : 0U) + (has_button ? 1U : 0U))
        return "the page has " + std::to_string(page.controls.size()) + " controls";
    return look_at_value(page);
}

void Player::look_at_list() {
    const bool is_open = list_is_open();
    may_edit_ = may_edit_ || (list_was_open_ && !is_open);
    list_was_open_ = is_open;
}

std::string Player::look_at_value(const Page& page) {
    const Sight now = sight_of(*shown_, page);
    const Sight wanted = newly_shown_ ? model_.expected(*shown_) : model_.last_seen(*shown_);
    const bool as_before = now == wanted;
    model_.see(*shown_, now);
    if (as_before || (may_edit_ && !newly_shown_))
        return "";
    return "the page of \"" + shown_->title + "\" (" + shown_->kind->type + ") shows \"" + now +
           "\" instead of \"" + wanted + "\"";
}

std::string Player::look_at_buttons() const {
    const bool changes = model_.has_changes();
    const std::string text = desk_.text_of(button(close_id));
    // Before the first update the button has no text yet, and OK is as it was made.
    const bool not_yet = caret_ == nullptr && text.empty();
    if (!not_yet && text != (changes ? "Cancel" : "Close"))
        return "the button says \"" + text + "\" while " + (changes ? "something" : "nothing") + " differs";
    if (!not_yet && (IsWindowEnabled(button(ok_id)) != 0) != changes)
        return std::string("OK is ") + (changes ? "disabled" : "enabled");
    const bool offered = selected_ != nullptr && selected_->file->test_titles.has_value();
    if ((IsWindowVisible(button(test_connection_id)) != 0) != offered)
        return std::string("Test Connection is ") + (offered ? "hidden" : "shown");
    return "";
}

std::string Player::look_at_focus() {
    const HWND focus = desk_.focus();
    const bool at_window = focus == desk_.window();
    if (at_window && !went_somewhere_)
        return "";
    if (focus == nullptr || at_window || !is_usable(focus) || is_frame(focus) || class_of(focus) == "Static")
        return "the focus is on " + describe(focus);
    went_somewhere_ = true;
    if (wanted_focus_ != nullptr && is_usable(wanted_focus_) && focus != wanted_focus_)
        return "the focus is on " + describe(focus) + " instead of " + describe(wanted_focus_);
    return "";
}

bool Player::is_on_page(HWND control) const {
    return control != nullptr && IsChild(desk_.window(), control) && GetParent(control) != desk_.window();
}

bool Player::is_scan(HWND control) const {
    return is_on_page(control) && class_of(control) == "Button" && desk_.text_of(control) == "Scan";
}

std::string Player::describe(HWND control) const {
    if (control == nullptr)
        return "nothing";
    if (control == desk_.window())
        return "the window itself";
    const std::string state = !IsWindow(control)          ? " (gone)"
                              : !IsWindowVisible(control) ? " (hidden)"
                              : !IsWindowEnabled(control) ? " (disabled)"
                                                          : "";
    const std::string name = class_of(control);
    if (name != "Button")
        return name + state;
    return (is_frame(control) ? "the frame \"" : "the button \"") + desk_.text_of(control) + "\"" + state;
}

} // namespace random_user
