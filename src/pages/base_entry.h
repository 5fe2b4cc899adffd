#pragma once
/// The base of all entries. An entry has one setting's title and help text, shows one page of controls while
/// its tree node is selected, and moves the value between these controls and its store. The page's frame is a
/// group box with the help text; the box is subclassed, so that the entry receives the notifications of its
/// controls.
#include "platform/win32.h"
#include "store/data_manipulator.h"
#include "window/controls.h"

#include <map>
#include <memory>
#include <string_view>

/// Every concrete entry derives from this class and from exactly one store class, which implements the shared
/// DataManipulator. There is no virtual destructor: entries exist until the process ends, and their owner
/// knows the class of each (see OwnedEntry).
class BaseEntry : public virtual DataManipulator {
public:
    /// `subspec` is the spec file's text from the entry's title on; its first three lines are the title, the
    /// value name and the help text. It must outlive the entry: the configuration owns it.
    explicit BaseEntry(std::string_view subspec) : subspec_(subspec) {}
    BaseEntry(const BaseEntry&) = delete;
    BaseEntry& operator=(const BaseEntry&) = delete;

    std::string_view title() const;
    std::string_view help_text() const;

    /// Creates the page's controls in `parent`, the main window, places them and shows the value. Throws a
    /// text (std::string) when a control cannot be created.
    void select(HWND parent);
    /// Takes the value from the page's controls and destroys them.
    void deselect(HWND parent);

    /// Creates the page's controls as children of `parent`. Throws a text when one cannot be created.
    virtual void createControls(HWND parent);
    virtual void destroyControls(HWND parent);
    /// Places the controls, in pixels, by the client rectangle of `parent`.
    virtual void layout(HWND parent);
    /// Puts the store's current value into the controls.
    virtual void showValue() = 0;
    /// Sets the store's current value from the controls.
    virtual void takeValue() = 0;
    /// Handles a message sent to the group box; returns the message's result.
    virtual LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

protected:
    ~BaseEntry() { pages.erase(this); }

    /// The members that an entry has only while its page is shown.
    struct Page {
        bool is_selected = false;
        /// The page's frame and the parent of its controls.
        HWND group_box = nullptr;
        WNDPROC previous_procedure = nullptr;
        HWND help_static = nullptr;
        /// The controls of the concrete entry; null if it has none.
        HWND control = nullptr;
        HWND button = nullptr;
    };
    /// Empty while the page is not shown. Do not keep the reference: a message that is handled meanwhile may
    /// close the page.
    Page& page() const { return pages[this]; }

private:
    void create_group_box(HWND parent);

    /// Not in the entry, because a configuration may have a hundred thousand entries, and shows one page.
    static inline std::map<const BaseEntry*, Page> pages;
    std::string_view subspec_;
};

/// Routes the messages of the group boxes to the entries whose pages they frame.
inline std::map<HWND, BaseEntry*> entryByGroupBox;

/// Destroys an entry as an object of its own class, but does not free its memory: see Settings::entry_memory.
struct EntryDeleter {
    void operator()(BaseEntry* entry) const { destroy(entry); }

    void (*destroy)(BaseEntry*) = nullptr;
};

using OwnedEntry = std::unique_ptr<BaseEntry, EntryDeleter>;

/// For a control that has no value to edit.
inline constexpr WORD never_reported = 0xFFFF;

/// The differences between kinds of such entries.
struct PageControl {
    ControlDescription child;
    /// Distance of the control's upper edge from the page's lower edge, and the control's height, in pixels.
    int above_bottom;
    int height;
    /// The notification code by which the control reports that the user edited the value.
    WORD edited = never_reported;
};

/// The page of every kind of entry that has one control below the help text.
class SingleControlEntry : public BaseEntry {
public:
    /// `kind` must outlive the entry.
    SingleControlEntry(std::string_view subspec, const PageControl& kind);

    void createControls(HWND parent) override;
    void destroyControls(HWND parent) override;
    void layout(HWND parent) override;
    LRESULT handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

protected:
    ~SingleControlEntry() = default;

    /// Null while the page is not shown.
    HWND control() const { return page().control; }

private:
    const PageControl& kind_;
};
