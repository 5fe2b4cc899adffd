/// Replaces the access control list of a key below HKEY_LOCAL_MACHINE: close_key KEY LIST, with the list in
/// the system's notation, such as "D:(D;;0x2;;;WD)(A;;KA;;;WD)", which denies everyone to set values and
/// allows everything else.
#include "platform/win32.h"

#include <sddl.h>

int main(int count, char** words) {
    HKEY key = nullptr;
    PSECURITY_DESCRIPTOR list = nullptr;
    if (count != 3 || RegOpenKeyExA(HKEY_LOCAL_MACHINE, words[1], 0, WRITE_DAC, &key) != ERROR_SUCCESS ||
        !ConvertStringSecurityDescriptorToSecurityDescriptorA(words[2], SDDL_REVISION_1, &list, nullptr))
        return 1;
    return RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, list) == ERROR_SUCCESS ? 0 : 1;
}
