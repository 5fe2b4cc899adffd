#include "window/top_level.h"

void post_page_changed() { PostMessageA(main_window, page_changed_message, 0, 0); }

bool register_window_class(HINSTANCE instance, const char* name, WNDPROC procedure) {
    WNDCLASSEXA description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = instance;
    description.hIcon = LoadIconA(instance, "tavrin");
    description.hIconSm =
        static_cast<HICON>(LoadImageA(instance, "tavrin", IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                      GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR));
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(INT_PTR{COLOR_BTNFACE + 1});
    description.lpszClassName = name;
    return RegisterClassExA(&description) != 0;
}
