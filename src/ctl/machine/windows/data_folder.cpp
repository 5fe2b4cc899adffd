#include "ctl/machine/data_folder.h"

#include "ctl/failure.h"
#include "ctl/io/windows/wide.h"
#include "platform/win32.h"

namespace ctl {

/// From the system, not from an environment variable, which whoever starts the program may set.
std::string data_folder() {
    wchar_t path[MAX_PATH];
    if (SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        throw Failure{failed, "Windows does not name its folder for the data of programs"};
    return from_wide(path) + "\\Tavrin";
}

} // namespace ctl
