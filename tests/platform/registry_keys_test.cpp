#include "platform/win32.h"
#include "support/registry.h"
#include "support/system.h"

#include <gmock/gmock.h>

namespace {

LSTATUS open_status(const std::string& path, HKEY root = HKEY_LOCAL_MACHINE) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExA(root, path.c_str(), 0, KEY_QUERY_VALUE, &key);
    if (status == ERROR_SUCCESS)
        RegCloseKey(key);
    return status;
}

LSTATUS delete_status(const std::string& path) { return RegDeleteKeyA(HKEY_LOCAL_MACHINE, path.c_str()); }

HKEY open_test_key(REGSAM access) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, test_key.c_str(), 0, access, &key), ERROR_SUCCESS);
    return key;
}

class RegistryKeys : public CleanSystem {
protected:
    RegistryKeys() { make_key(test_key); }
};

TEST_F(RegistryKeys, AreFoundWithoutCase) {
    EXPECT_EQ(open_status("SOFTWARE\\TavrinTests"), ERROR_SUCCESS);
    EXPECT_EQ(open_status("software\\TAVRINTESTS"), ERROR_SUCCESS);
}

TEST_F(RegistryKeys, AreNotFoundWhenMissing) {
    EXPECT_EQ(open_status(test_key + "\\Missing"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(open_status(test_key + "\\Missing\\Deeper"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(open_status("SOFTWARE/TavrinTests"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryKeys, TolerateBackslashesInTheMiddleAndAtTheEndOnly) {
    EXPECT_EQ(open_status("SOFTWARE\\\\TavrinTests"), ERROR_SUCCESS);
    EXPECT_EQ(open_status("SOFTWARE\\\\\\TavrinTests"), ERROR_SUCCESS);
    EXPECT_EQ(open_status("SOFTWARE\\TavrinTests\\"), ERROR_SUCCESS);
    EXPECT_EQ(open_status("SOFTWARE\\TavrinTests\\\\"), ERROR_SUCCESS);
    EXPECT_EQ(open_status("\\SOFTWARE\\TavrinTests"), ERROR_BAD_PATHNAME);
    EXPECT_EQ(open_status("\\"), ERROR_BAD_PATHNAME);
    EXPECT_EQ(delete_status("\\SOFTWARE\\TavrinTests"), ERROR_BAD_PATHNAME);
    EXPECT_EQ(delete_status("SOFTWARE\\\\TavrinTests\\"), ERROR_SUCCESS);
    EXPECT_FALSE(key_exists(test_key));
}

TEST_F(RegistryKeys, OpenedByTheEmptyPathAreTheSameKey) {
    HKEY root = nullptr;
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, "", 0, KEY_QUERY_VALUE, &root), ERROR_SUCCESS);
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    HKEY key = open_test_key(KEY_QUERY_VALUE);
    EXPECT_EQ(open_status("", key), ERROR_SUCCESS);
    RegCloseKey(key);
}

TEST_F(RegistryKeys, AreMadeWithThoseAboveThem) {
    HKEY key = nullptr;
    const std::string path = test_key + "\\A\\B";
    EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, ("\\" + path).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key, nullptr),
              ERROR_BAD_PATHNAME);
}

TEST_F(RegistryKeys, WithSubkeysAreNotDeleted) {
    make_key(test_key + "\\Parent\\Child");
    EXPECT_EQ(delete_status(test_key + "\\Parent"), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(key_exists(test_key + "\\Parent"));
    EXPECT_EQ(delete_status(test_key + "\\Parent\\Child"), ERROR_SUCCESS);
    EXPECT_EQ(delete_status(test_key + "\\parent"), ERROR_SUCCESS);
    EXPECT_FALSE(key_exists(test_key + "\\Parent"));
    EXPECT_EQ(delete_status(test_key + "\\Parent"), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryKeys, WithSubkeysAreDeletedAsATree) {
    make_key(test_key + "\\Parent\\Child");
    set_text(test_key + "\\Parent\\Child", "v", "text");
    EXPECT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, (test_key + "\\Parent").c_str()), ERROR_SUCCESS);
    EXPECT_FALSE(key_exists(test_key + "\\Parent"));
    EXPECT_EQ(RegDeleteTreeA(HKEY_LOCAL_MACHINE, (test_key + "\\Parent").c_str()), ERROR_FILE_NOT_FOUND);
}

TEST_F(RegistryKeys, DeletedWhileOpenRefuseEverythingButToBeClosed) {
    HKEY key = open_test_key(KEY_ALL_ACCESS);
    EXPECT_EQ(delete_status(test_key), ERROR_SUCCESS);
    DWORD count = 0;
    EXPECT_EQ(RegQueryValueExA(key, "v", nullptr, nullptr, nullptr, nullptr), ERROR_KEY_DELETED);
    EXPECT_EQ(RegSetValueExA(key, "v", 0, REG_SZ, reinterpret_cast<const BYTE*>("x"), 2), ERROR_KEY_DELETED);
    EXPECT_EQ(RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                               nullptr, nullptr, nullptr),
              ERROR_KEY_DELETED);
    EXPECT_EQ(open_status("Sub", key), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(RegistryKeys, ClosedAreInvalid) {
    HKEY key = open_test_key(KEY_ALL_ACCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegQueryValueExA(key, "v", nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(open_status("Sub", key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(open_status("SOFTWARE", nullptr), ERROR_INVALID_HANDLE);
}

TEST_F(RegistryKeys, AllowWhatTheyWereOpenedFor) {
    HKEY reader = open_test_key(KEY_QUERY_VALUE);
    char name[8];
    DWORD size = sizeof name;
    EXPECT_EQ(RegSetValueExA(reader, "v", 0, REG_SZ, reinterpret_cast<const BYTE*>("x"), 2),
              ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteValueA(reader, "v"), ERROR_ACCESS_DENIED);
    RegCloseKey(reader);
    HKEY writer = open_test_key(KEY_SET_VALUE);
    EXPECT_EQ(RegSetValueExA(writer, "v", 0, REG_SZ, reinterpret_cast<const BYTE*>("x"), 2), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExA(writer, "v", nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegEnumValueA(writer, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
    RegCloseKey(writer);
}

} // namespace
