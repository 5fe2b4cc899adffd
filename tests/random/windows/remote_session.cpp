#include "random/windows/remote_session.h"

#include "e2e/input.h"
#include "e2e/wait.h"
#include "e2e/window.h"
#include "support/registry.h"

#include <algorithm>
#include <fstream>

namespace random_user {
namespace {

constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";
constexpr char ports_key[] = "HARDWARE\\DEVICEMAP\\SERIALCOMM";
constexpr UINT quickest = 1;

/// The user's other program.
class OtherProgram {
public:
    static HWND window() {
        static const HWND made = make();
        return made;
    }
    static HWND make() {
        const HWND window =
            CreateWindowExA(0, "Static", "another program", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 560, 420, 80,
                            50, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
        e2e::serve_own_windows();
        return window;
    }
};

/// The same item or button may be clicked twice in a row: that is no double click.
class NoDoubleClicks {
public:
    NoDoubleClicks() : usual_(GetDoubleClickTime()) {
        SystemParametersInfoA(SPI_SETDOUBLECLICKTIME, quickest, nullptr, 0);
    }
    ~NoDoubleClicks() { SystemParametersInfoA(SPI_SETDOUBLECLICKTIME, usual_, nullptr, 0); }
    NoDoubleClicks(const NoDoubleClicks&) = delete;
    NoDoubleClicks& operator=(const NoDoubleClicks&) = delete;

private:
    UINT usual_;
};

HWND find_child(HWND parent, const char* name) {
    for (const HWND child : e2e::children_of(parent)) {
        if (e2e::is_class(child, name) && IsWindowVisible(child))
            return child;
        if (const HWND below = find_child(child, name))
            return below;
    }
    return nullptr;
}

std::string message_of(HWND box) {
    std::string text;
    for (const HWND child : e2e::children_of(box))
        if (e2e::is_class(child, "Static"))
            text += e2e::text_of(child);
    return text;
}

/// The first button of a box, or the last one if the user chooses it.
int button_of(HWND box, bool other_way) {
    std::vector<int> found;
    for (const int id : {IDYES, IDOK, IDNO, IDCANCEL})
        if (const HWND button = GetDlgItem(box, id); button != nullptr && IsWindowVisible(button))
            found.push_back(id);
    if (found.empty())
        return 0;
    return other_way ? found.back() : found.front();
}

} // namespace

RemoteSession::RemoteSession(std::uint32_t seed)
    : world_(world_of(seed, ports())), model_(world_), player_(model_, *this) {}

std::vector<std::string> RemoteSession::ports() {
    std::vector<std::string> found;
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, ports_key, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return found;
    for (DWORD index = 0;; ++index) {
        char name[256] = "";
        char data[256] = "";
        DWORD name_size = sizeof name;
        DWORD size = sizeof data - 1;
        if (RegEnumValueA(key, index, name, &name_size, nullptr, nullptr, reinterpret_cast<BYTE*>(data),
                          &size) != ERROR_SUCCESS)
            break;
        found.emplace_back(data);
    }
    RegCloseKey(key);
    std::sort(found.begin(), found.end());
    return found;
}

Outcome RemoteSession::play(std::uint32_t seed, const std::vector<Step>& steps) {
    return RemoteSession(seed).run(steps);
}

Outcome RemoteSession::run(const std::vector<Step>& steps) {
    const NoDoubleClicks no_double_clicks;
    std::string fault;
    try {
        start();
        fault = play_steps(steps);
        if (fault.empty())
            fault = fault_at_the_end();
    } catch (const std::runtime_error& error) {
        fault = error.what();
    }
    tool_.reset();
    return {fault, player_.notes(), played_};
}

void RemoteSession::start() {
    delete_key(test_key);
    delete_key(list_key);
    make_key(list_key);
    fill_registry(world_);
    for (const SpecFile& file : world_.files) {
        const std::string path = folder_.path_of(file.value_name + ".spec");
        if (!file.is_missing)
            std::ofstream(path, std::ios::binary) << random_user::text_of(file);
        set_text(list_key, file.value_name, path);
    }
    OtherProgram::window();
    tool_ = std::make_unique<e2e::Tool>();
    main_ = tool_->window();
    SetWindowPos(main_, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    e2e::bring_to_front(main_);
    wait_until_idle();
}

std::string RemoteSession::play_steps(const std::vector<Step>& steps) {
    std::string fault = player_.look();
    for (auto step = steps.begin(); step != steps.end() && fault.empty(); ++step) {
        ++played_;
        fault = play_step(*step);
        if (player_.end() != End::none || window() == nullptr)
            return fault;
    }
    return fault.empty() ? play_step({Action::shut, 0, false, 0, "", Meanwhile::nothing}) : fault;
}

std::string RemoteSession::play_step(const Step& step) {
    player_.play(step);
    settle(step);
    if (window() == nullptr)
        return "";
    return player_.end() == End::none ? player_.look() : "the program goes on";
}

std::string RemoteSession::fault_at_the_end() {
    const bool failed = player_.end() == End::failed;
    const DWORD code = tool_->exit_code(e2e::limit);
    if (code != (failed ? 1U : 0U))
        return "exit code " + std::to_string(code) +
               (texts_.empty() ? "" : " after \"" + texts_.back() + "\"");
    if (failed &&
        (texts_.empty() || captions_.back() != "Error!" || texts_.back().rfind(*player_.failure(), 0) != 0))
        return "the program does not say \"" + *player_.failure() + "\"";
    if (player_.end() == End::none)
        return "the program ends by itself";
    if (!player_.fault().empty())
        return player_.fault();
    return model_.registry_faults(player_.end() == End::applied);
}

/// Waits until everything that a step causes has happened, including its boxes.
void RemoteSession::settle(const Step& step) {
    const ULONGLONG end = GetTickCount64() + e2e::limit * 1000;
    bool met = false;
    while (tool_->running()) {
        if (GetTickCount64() > end)
            throw std::runtime_error("the program does not become idle");
        e2e::serve_own_windows();
        const HWND dialog = open_dialog();
        if (dialog == nullptr) {
            wait_until_idle();
            if (open_dialog() == nullptr && window() != nullptr && IsWindowEnabled(main_))
                return come_back();
            if (window() == nullptr)
                Sleep(1);
            continue;
        }
        if (!met) {
            met = true;
            wait_until_idle();
            player_.play_meanwhile(step);
            wait_until_idle();
            continue;
        }
        answer_if_there(dialog, step);
    }
}

/// If the main window is closed meanwhile, its box closes by itself at any moment. A box that stays open is
/// handled again.
void RemoteSession::answer_if_there(HWND dialog, const Step& step) {
    try {
        if (IsWindowVisible(dialog))
            answer(dialog, step);
    } catch (const std::runtime_error&) {
        Sleep(1);
    }
}

/// After a box without an owner, the system may have activated another window of the desktop.
void RemoteSession::come_back() {
    if (GetForegroundWindow() == main_)
        return;
    e2e::bring_to_front(main_);
    wait_until_idle();
}

/// The system asks a window to paint itself only when nothing else waits for it, input included. The corner
/// to be painted is empty, so that no control has a hand in it.
void RemoteSession::wait_until_idle() {
    if (window() == nullptr || IsIconic(main_))
        return;
    const RECT corner = {0, 0, 1, 1};
    InvalidateRect(main_, &corner, FALSE);
    const ULONGLONG end = GetTickCount64() + e2e::limit * 1000;
    while (window() != nullptr && GetUpdateRect(main_, nullptr, FALSE)) {
        if (GetTickCount64() > end)
            throw std::runtime_error("the program does not become idle");
        e2e::serve_own_windows();
        Sleep(1);
    }
}

HWND RemoteSession::open_dialog() {
    for (const HWND each : e2e::windows_of(GetProcessId(tool_->process_handle())))
        if (e2e::is_class(each, "#32770") && IsWindowVisible(each))
            return each;
    return nullptr;
}

/// A box below another one is hidden at once, and goes with the one above it.
void RemoteSession::answer(HWND dialog, const Step& step) {
    const std::string caption = e2e::text_of(dialog);
    captions_.push_back(caption);
    texts_.push_back(message_of(dialog));
    if (caption == "File selection..." && step.other_way)
        return choose_file(dialog);
    int button = button_of(dialog, !step.other_way);
    if (caption == "Browse for Folder" && step.other_way && IsWindowEnabled(GetDlgItem(dialog, IDOK)))
        button = IDOK;
    const ULONGLONG again = GetTickCount64() + 3000;
    PostMessageA(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    e2e::wait_for("the end of \"" + caption + "\"",
                  [&] { return !IsWindowVisible(dialog) || GetTickCount64() > again; });
    if (IsWindowVisible(dialog))
        PostMessageA(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    e2e::wait_for("the end of \"" + caption + "\"", [&] { return !IsWindowVisible(dialog); });
}

void RemoteSession::choose_file(HWND dialog) {
    const HWND name = find_child(dialog, "Edit");
    e2e::send(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("C:\\windows\\win.ini"));
    PostMessageA(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
    e2e::wait_for("the end of the file dialog", [&] { return !IsWindow(dialog); });
}

/// A hidden one is about to be destroyed.
HWND RemoteSession::window() { return tool_->running() && IsWindowVisible(main_) ? main_ : nullptr; }
HWND RemoteSession::focus() { return e2e::focus_of(main_); }
std::string RemoteSession::text_of(HWND control) { return e2e::text_of(control); }
std::string RemoteSession::text_of(HTREEITEM item) { return tool_->tree().text(item); }
bool RemoteSession::find(HTREEITEM item, RECT& text_place) {
    return tool_->tree().find_text(item, text_place);
}

void RemoteSession::click(HWND control, POINT where) {
    ClientToScreen(control, &where);
    // The display tells the program late where its pointer is. A move between button down and up would be a
    // drag.
    e2e::point_at(where);
    wait_until_idle();
    e2e::click_at(where);
}

void RemoteSession::press(int key, bool with_shift) { e2e::press_key(static_cast<WORD>(key), with_shift); }
void RemoteSession::type(const std::string& text) { e2e::type(text); }

/// A box that opens or closes meanwhile changes what is in front.
void RemoteSession::leave_and_return() {
    const HWND before = GetForegroundWindow();
    e2e::bring_to_front(OtherProgram::window());
    wait_until_idle();
    e2e::wait_for("the program in the foreground", [&] {
        const HWND dialog = open_dialog();
        const bool stays = IsWindowVisible(before) && IsWindowEnabled(before);
        const HWND front = stays ? before : dialog != nullptr ? dialog : window();
        return front == nullptr || e2e::is_in_front(front) || (SetForegroundWindow(front), false);
    });
}

void RemoteSession::minimise_and_restore() {
    PostMessageA(main_, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    e2e::wait_for("the minimised window", [this] { return IsIconic(main_) != FALSE; });
    PostMessageA(main_, WM_SYSCOMMAND, SC_RESTORE, 0);
    e2e::wait_for("the restored window", [this] { return IsIconic(main_) == FALSE; });
}

void RemoteSession::minimise_beside_another_window() {
    PostMessageA(main_, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    e2e::wait_for("the minimised window", [this] { return IsIconic(main_) != FALSE; });
    leave_and_return_to(OtherProgram::make());
    PostMessageA(main_, WM_SYSCOMMAND, SC_RESTORE, 0);
    e2e::wait_for("the restored window", [this] { return IsIconic(main_) == FALSE; });
}

/// A window of another program comes to the front and is then destroyed.
void RemoteSession::leave_and_return_to(HWND other) {
    e2e::bring_to_front(other);
    e2e::serve_own_windows();
    DestroyWindow(other);
    e2e::serve_own_windows();
}

void RemoteSession::select(HTREEITEM item) {
    e2e::send(GetDlgItem(main_, e2e::tree_id), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

void RemoteSession::order_to_close() { PostMessageA(main_, WM_CLOSE, 0, 0); }
bool RemoteSession::may_session_end() { return e2e::send(main_, WM_QUERYENDSESSION) != 0; }

bool RemoteSession::shows_system_dialog() {
    const HWND dialog = open_dialog();
    if (dialog == nullptr)
        return false;
    const std::string caption = e2e::text_of(dialog);
    return caption == "File selection..." || caption == "Browse for Folder";
}

void RemoteSession::resize(int width, int height) {
    SetWindowPos(main_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void RemoteSession::shut() { PostMessageA(main_, WM_SYSCOMMAND, SC_CLOSE, 0); }

} // namespace random_user
