#include "ctl/machine/data_folder.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/windows/encoding.h"
#include "platform/win32.h"

#include <memory>

namespace ctl {
namespace {

struct LocalFreer {
    void operator()(void* memory) const { LocalFree(memory); }
};
using OwnedMemory = std::unique_ptr<void, LocalFreer>;

struct HandleCloser {
    void operator()(void* handle) const { CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, HandleCloser>;

/// The folder and everything in it belong to the administrators and are open to them and to SYSTEM alone.
OwnedMemory protected_descriptor() {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)",
                                                         SDDL_REVISION_1, &descriptor, nullptr);
    return OwnedMemory(descriptor);
}

[[noreturn]] void refuse(const std::string& path, DWORD code, const char* what = "cannot open the folder ") {
    throw Failure{code == ERROR_ACCESS_DENIED ? ExitCode::access_denied : ExitCode::failed,
                  what + path + ": " + to_utf8(system_error_string(code)) + "; nothing was written"};
}

/// Opens the folder itself, not the target of a link. While the handle is open, nobody can rename the folder.
OwnedHandle open_folder(const std::string& path, DWORD access) {
    const HANDLE handle =
        CreateFileW(to_wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        refuse(path, GetLastError());
    return OwnedHandle(handle);
}

/// Wine reports a link only for the path, not for the handle.
bool is_plain_folder(const std::string& path, const OwnedHandle& folder) {
    BY_HANDLE_FILE_INFORMATION found{};
    if (!GetFileInformationByHandle(folder.get(), &found))
        return false;
    const DWORD attributes = found.dwFileAttributes | GetFileAttributesW(to_wide(path).c_str());
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// As "S-1-5-18".
std::string owner_of(const OwnedHandle& folder) {
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    wchar_t* text = nullptr;
    if (GetSecurityInfo(folder.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                        nullptr, &descriptor) != ERROR_SUCCESS)
        return "an unknown user";
    const OwnedMemory owned_descriptor(descriptor);
    if (!ConvertSidToStringSidW(owner, &text))
        return "an unknown user";
    const OwnedMemory owned_text(text);
    return from_wide(text);
}

constexpr std::string_view local_system = "S-1-5-18";
constexpr std::string_view administrators = "S-1-5-32-544";
constexpr std::string_view trusted_installer =
    "S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464";

/// The owner of the folder above, on Windows SYSTEM, can replace this one anyway.
bool is_trusted(const std::string& owner, const std::string& above) {
    return owner == local_system || owner == administrators || owner == trusted_installer ||
           owner == owner_of(open_folder(above, READ_CONTROL));
}

/// Older versions created the folder with rights for every user.
void close_to_others(const std::string& path, const OwnedHandle& folder, const OwnedMemory& descriptor) {
    BOOL is_there = FALSE;
    BOOL is_default = FALSE;
    ACL* rights = nullptr;
    constexpr const char* what = "cannot remove other users' access to the folder ";
    if (!GetSecurityDescriptorDacl(descriptor.get(), &is_there, &rights, &is_default))
        refuse(path, GetLastError(), what);
    const DWORD code = SetSecurityInfo(folder.get(), SE_FILE_OBJECT,
                                       DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                                       nullptr, nullptr, rights, nullptr);
    if (code != ERROR_SUCCESS)
        refuse(path, code, what);
}

void prepare(const std::string& path, const std::string& above) {
    const OwnedMemory descriptor = protected_descriptor();
    SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor.get(), FALSE};
    if (!CreateDirectoryW(to_wide(path).c_str(), &attributes) && GetLastError() != ERROR_ALREADY_EXISTS)
        refuse(path, GetLastError());
    const OwnedHandle folder = open_folder(path, READ_CONTROL | WRITE_DAC | FILE_READ_ATTRIBUTES);
    if (!is_plain_folder(path, folder))
        throw Failure{ExitCode::failed, path + " is a link or a file; remove it and run tavrinctl again"};
    const std::string owner = owner_of(folder);
    if (!is_trusted(owner, above)) {
        throw Failure{ExitCode::failed,
                      path + " belongs to " + owner +
                          ", not to the administrators; look at what is in it, remove it and run "
                          "tavrinctl again"};
    }
    close_to_others(path, folder, descriptor);
}

/// Asks the system, because whoever starts the program can set an environment variable.
std::string ask_for_program_data() {
    wchar_t path[MAX_PATH];
    if (SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        throw Failure{ExitCode::failed, "Windows does not report its folder for program data"};
    return from_wide(path);
}

const std::string& program_data() {
    static const std::string folder = ask_for_program_data();
    return folder;
}

} // namespace

std::string data_folder() { return program_data() + "\\Tavrin"; }

std::string backup_folder() { return data_folder() + "\\Backup"; }

void prepare_data_folder() {
    const std::string& above = program_data();
    prepare(above + "\\Tavrin", above);
    prepare(above + "\\Tavrin\\Backup", above);
}

} // namespace ctl
