#include "substitute/dialogs/modal_dialog.h"

#include "substitute/controls/controls.h"
#include "substitute/windows/messages.h"
#include "substitute/windows/window_calls.h"

namespace substitute {
namespace {

HWND open(HWND owner, LPCSTR title, LPCSTR class_name) {
    CREATESTRUCTA create{};
    create.lpszClass = class_name == nullptr ? dialog_class : class_name;
    create.lpszName = title;
    create.style = static_cast<LONG>(WS_POPUP | WS_CAPTION | WS_VISIBLE);
    create.hwndParent = owner;
    create.cx = create.cy = 300;
    return create_window(create);
}

} // namespace

ModalDialog::ModalDialog(HWND owner, LPCSTR title, LPCSTR class_name)
    : owner_(owner), owner_was_disabled_(owner != nullptr && enable_window(owner, false)),
      handle_(open(owner, title, class_name)) {
    dispatch_posted();
    deliver("a dialog");
}

ModalDialog::~ModalDialog() {
    if (owner_ != nullptr && !owner_was_disabled_)
        enable_window(owner_, true);
    destroy_window(handle_);
}

} // namespace substitute
