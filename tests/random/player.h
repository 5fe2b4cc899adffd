#pragma once
/// Plays a user's steps and compares what they see with what the model says.
#include "random/desk.h"
#include "random/model.h"
#include "random/step.h"

#include <optional>
#include <string>
#include <vector>

namespace random_user {

/// How a session is meant to end.
enum class End { none, applied, discarded, failed };

class Player {
public:
    Player(Model& model, Desk& desk) : model_(model), desk_(desk) {}

    /// Does the step, and notes it in plain words.
    void play(const Step& step);
    /// Does what the user does while a box is open that the step has opened.
    void play_meanwhile(const Step& step);
    /// The same for what other processes and the system do, at any moment.
    void play_others(const Step& step);
    /// Looks at the window after a step. Returns what is wrong; empty when all is well.
    std::string look();

    /// Whether the last step was one that may end the program, and how.
    End end() const { return end_; }
    /// What was wrong in the middle of a step.
    const std::string& fault() const { return fault_; }
    const std::optional<std::string>& failure() const { return failure_; }
    const std::vector<std::string>& notes() const { return notes_; }

private:
    struct Page {
        std::string title;
        std::string help;
        std::vector<HWND> controls;
    };

    // What the window holds.
    HWND tree() const;
    HWND button(int id) const;
    HTREEITEM caret() const;
    std::vector<Page> pages() const;
    bool list_is_open() const;
    Sight sight_of(const Entry& entry, const Page& page) const;

    // The steps.
    std::vector<std::size_t> open_items() const;
    HTREEITEM child_of(std::size_t index) const;
    void click_item(const Step& step);
    void click_expander(const Step& step);
    void click_control(const Step& step);
    void click_button(int id, const char* name, const Step& step);
    void click_and_remember(HWND control, POINT where);
    void grow_impatient(const Step& step, std::size_t boxes);
    void minimise(const Step& step);
    void click_background();
    void close_list();
    void press_key(const Step& step);
    void type(const Step& step);
    void press(HWND pressed);
    void keep_focus();
    void close_meanwhile(const char* how, void (Desk::*close)());
    void press_again();
    void select_from_outside(const Step& step);
    void ask_for_end_of_session();
    void note(const std::string& text) { notes_.push_back(text); }

    // The looks.
    void learn_items();
    void add_items(HTREEITEM first, int depth, std::string& fault);
    std::string follow_caret();
    std::string look_at_page();
    void look_at_list();
    std::string look_at_value(const Page& page);
    std::string look_at_buttons() const;
    std::string look_at_focus();
    bool is_on_page(HWND control) const;
    bool is_scan(HWND control) const;
    std::string describe(HWND control) const;

    Model& model_;
    Desk& desk_;
    std::vector<HTREEITEM> handles_;
    HTREEITEM caret_ = nullptr;
    const Item* selected_ = nullptr;
    const Entry* shown_ = nullptr;
    bool newly_shown_ = false;
    bool may_edit_ = false;
    bool may_close_item_ = false;
    /// A list that closes without a choice restores the previous one.
    bool list_was_open_ = false;
    /// Where the focus must be after the step; null when that is not known.
    HWND wanted_focus_ = nullptr;
    bool went_somewhere_ = false;
    End end_ = End::none;
    std::optional<std::string> failure_;
    std::vector<std::string> notes_;
    std::string tree_fault_;
    std::string fault_;
    /// What the step has clicked on, and where, if that can open a box.
    struct {
        HWND control = nullptr;
        POINT where = {};
    } pressed_;
    /// How many boxes there may have been after the step; nothing when any number may.
    std::optional<std::size_t> most_boxes_;
};

} // namespace random_user
