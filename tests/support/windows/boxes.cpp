#include "support/boxes.h"

#include <deque>

/// A hook sees every dialog of the thread when it has just been filled; a message box among them is read and
/// its button pressed by a posted message, which the box's own loop handles first.
namespace {

constexpr int text_id = 0xFFFF;
constexpr int icon_id = 0x440;

HHOOK hook = nullptr;
std::deque<int> answers;
std::deque<std::function<void()>> steps;
std::vector<SeenBox> shown;

std::string text_of(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool has_class(HWND window, const char* name) {
    char own[32] = "";
    return GetClassNameA(window, own, sizeof own) > 0 && std::string(own) == name;
}

bool is_message_box(HWND window) {
    return has_class(window, "#32770") && GetDlgItem(window, icon_id) != nullptr &&
           has_class(GetDlgItem(window, text_id), "Static");
}

bool has_button(HWND box, int id) {
    const HWND button = GetDlgItem(box, id);
    return button != nullptr && (GetWindowLongPtrA(button, GWL_STYLE) & WS_VISIBLE) != 0;
}

UINT buttons_of(HWND box) {
    if (has_button(box, IDYES))
        return has_button(box, IDCANCEL) ? MB_YESNOCANCEL : MB_YESNO;
    return has_button(box, IDOK) && has_button(box, IDCANCEL) ? MB_OKCANCEL : MB_OK;
}

UINT icon_of(HWND box) {
    const auto shown_icon = reinterpret_cast<HICON>(SendDlgItemMessageA(box, icon_id, STM_GETICON, 0, 0));
    const std::pair<UINT, LPCSTR> icons[] = {{MB_ICONERROR, IDI_HAND},
                                             {MB_ICONQUESTION, IDI_QUESTION},
                                             {MB_ICONEXCLAMATION, IDI_EXCLAMATION},
                                             {MB_ICONINFORMATION, IDI_ASTERISK}};
    for (const auto& [style, name] : icons)
        if (shown_icon != nullptr && shown_icon == LoadIconA(nullptr, name))
            return style;
    return 0;
}

template <typename Value> Value take_next(std::deque<Value>& queued, Value otherwise) {
    if (queued.empty())
        return otherwise;
    Value next = std::move(queued.front());
    queued.pop_front();
    return next;
}

/// A box with only an OK button may give it the number of Cancel, so that Escape presses it.
int button_of(HWND box, int wanted) { return wanted == IDOK && !has_button(box, IDOK) ? IDCANCEL : wanted; }

void answer_box(HWND box) {
    const UINT buttons = buttons_of(box);
    shown.push_back(
        {text_of(GetDlgItem(box, text_id)), text_of(box), buttons | icon_of(box), GetWindow(box, GW_OWNER)});
    take_next<std::function<void()>>(steps, [] {})();
    const bool asks = buttons == MB_YESNO || buttons == MB_YESNOCANCEL;
    const int button = button_of(box, take_next(answers, asks ? IDYES : IDOK));
    PostMessageA(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

LRESULT CALLBACK after_message(int code, WPARAM wparam, LPARAM lparam) {
    const auto& message = *reinterpret_cast<const CWPRETSTRUCT*>(lparam);
    if (code == HC_ACTION && message.message == WM_INITDIALOG && is_message_box(message.hwnd))
        answer_box(message.hwnd);
    return CallNextHookEx(hook, code, wparam, lparam);
}

} // namespace

Boxes::Boxes() : first_(shown.size()) {
    hook = SetWindowsHookExA(WH_CALLWNDPROCRET, after_message, nullptr, GetCurrentThreadId());
}

Boxes::~Boxes() {
    UnhookWindowsHookEx(hook);
    answers.clear();
    steps.clear();
}

void Boxes::answer(int button) { answers.push_back(button); }
void Boxes::while_shown(std::function<void()> step) { steps.push_back(std::move(step)); }
std::size_t Boxes::answers_left() const { return answers.size(); }
std::vector<SeenBox> Boxes::seen() const {
    return {shown.begin() + static_cast<std::ptrdiff_t>(first_), shown.end()};
}
