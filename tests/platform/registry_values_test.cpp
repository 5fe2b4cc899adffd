#include "platform/win32.h"
#include "support/registry.h"
#include "support/system.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>

namespace {

using testing::Optional;

class RegistryValues : public CleanSystem {
protected:
    RegistryValues() {
        make_key(test_key);
        RegOpenKeyExA(HKEY_LOCAL_MACHINE, test_key.c_str(), 0, KEY_ALL_ACCESS, &key_);
    }
    ~RegistryValues() override { RegCloseKey(key_); }

    HKEY key_ = nullptr;
};

struct Answer {
    LSTATUS status;
    DWORD type;
    DWORD size;
    std::string buffer; // `room` bytes and one behind

    bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    return out << "status " << answer.status << ", type " << answer.type << ", size " << answer.size << ", "
               << testing::PrintToString(answer.buffer);
}

Answer query(HKEY key, const std::string& name, DWORD room) {
    Answer answer{0, 0, room, std::string(room + 1, '#')};
    answer.status = RegQueryValueExA(key, name.c_str(), nullptr, &answer.type,
                                     reinterpret_cast<BYTE*>(answer.buffer.data()), &answer.size);
    return answer;
}

TEST_F(RegistryValues, KeepBytesOfEveryTypeAndLength) {
    for (const DWORD type :
         {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_LINK, REG_MULTI_SZ, REG_QWORD}) {
        for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 1025U}) {
            SCOPED_TRACE(testing::Message() << "type " << type << ", " << length << " bytes");
            const std::string letters(length, 'a');
            set_value(test_key, "v", type, letters);
            EXPECT_THAT(raw_value(test_key, "v"), Optional(RawValue{type, letters}));
            if (length > 0) {
                const std::string terminated = letters.substr(1) + '\0';
                set_value(test_key, "v", type, terminated);
                EXPECT_THAT(raw_value(test_key, "v"), Optional(RawValue{type, terminated}));
            }
        }
    }
}

TEST_F(RegistryValues, OfStringTypesAreTerminatedWhereThereIsRoom) {
    for (const DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_MULTI_SZ}) {
        set_value(test_key, "v", type, "abc");
        EXPECT_EQ(query(key_, "v", 5), (Answer{ERROR_SUCCESS, type, 3, std::string("abc\0##", 6)}));
        EXPECT_EQ(query(key_, "v", 3), (Answer{ERROR_SUCCESS, type, 3, "abc#"}));
        set_value(test_key, "v", type, std::string("ab\0", 3));
        EXPECT_EQ(query(key_, "v", 5), (Answer{ERROR_SUCCESS, type, 3, std::string("ab\0###", 6)}));
    }
    set_value(test_key, "v", REG_BINARY, "abc");
    EXPECT_EQ(query(key_, "v", 5), (Answer{ERROR_SUCCESS, REG_BINARY, 3, "abc###"}));
    set_value(test_key, "v", REG_SZ, "");
    EXPECT_EQ(query(key_, "v", 2), (Answer{ERROR_SUCCESS, REG_SZ, 0, "###"}));
}

TEST_F(RegistryValues, TooLongForTheBufferTellTheirSizeAndCopyNothing) {
    set_value(test_key, "v", REG_BINARY, "abcd");
    EXPECT_EQ(query(key_, "v", 3), (Answer{ERROR_MORE_DATA, REG_BINARY, 4, "####"}));
    EXPECT_EQ(query(key_, "v", 4), (Answer{ERROR_SUCCESS, REG_BINARY, 4, "abcd#"}));
    EXPECT_EQ(query(key_, "v", 0), (Answer{ERROR_MORE_DATA, REG_BINARY, 4, "#"}));
}

TEST_F(RegistryValues, AnswerWithoutABuffer) {
    set_value(test_key, "v", REG_DWORD, "abcd");
    DWORD type = 0;
    DWORD size = 99;
    BYTE data[4];
    EXPECT_EQ(RegQueryValueExA(key_, "v", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(RegQueryValueExA(key_, "v", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(RegQueryValueExA(key_, "v", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryValues, TakeAlongAZeroBehindAnUnterminatedString) {
    RegSetValueExA(key_, "text", 0, REG_SZ, reinterpret_cast<const BYTE*>("abc"), 3);
    EXPECT_THAT(raw_value(test_key, "text"), Optional(RawValue{REG_SZ, std::string("abc\0", 4)}));
    RegSetValueExA(key_, "raw", 0, REG_BINARY, reinterpret_cast<const BYTE*>("abc"), 3);
    EXPECT_THAT(raw_value(test_key, "raw"), Optional(RawValue{REG_BINARY, "abc"}));
}

TEST_F(RegistryValues, KeepBytesAbove127AndZerosInside) {
    const std::string bytes("\x80\xE4\0\xFF\x01z", 6);
    set_value(test_key, "v", REG_SZ, bytes + '\0');
    EXPECT_THAT(raw_value(test_key, "v"), Optional(RawValue{REG_SZ, bytes + '\0'}));
}

TEST_F(RegistryValues, AreNamedWithoutCaseAndKeepTheCaseOfTheirFirstName) {
    set_text(test_key, "Port", "1");
    set_text(test_key, "PORT", "2");
    EXPECT_EQ(text_value(test_key, "port"), "2");
    char name[16];
    DWORD size = sizeof name;
    EXPECT_EQ(RegEnumValueA(key_, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_STREQ(name, "Port");
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(RegEnumValueA(key_, 1, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
}

TEST_F(RegistryValues, MayHaveNoName) {
    set_text(test_key, "", "default");
    EXPECT_EQ(text_value(test_key, ""), "default");
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExA(key_, nullptr, nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 8U);
}

TEST_F(RegistryValues, AreMissingUntilWrittenAndAfterDeletion) {
    EXPECT_EQ(raw_value(test_key, "v"), std::nullopt);
    EXPECT_EQ(RegDeleteValueA(key_, "v"), ERROR_FILE_NOT_FOUND);
    set_text(test_key, "u", "1");
    set_text(test_key, "v", "2");
    set_text(test_key, "w", "3");
    EXPECT_EQ(RegDeleteValueA(key_, "V"), ERROR_SUCCESS);
    EXPECT_EQ(raw_value(test_key, "v"), std::nullopt);
    EXPECT_EQ(text_value(test_key, "u"), "1");
    EXPECT_EQ(text_value(test_key, "w"), "3");
}

TEST_F(RegistryValues, AreRefusedWithoutDataOrWithAnEndlessName) {
    EXPECT_EQ(RegSetValueExA(key_, "v", 0, REG_BINARY, nullptr, 0), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExA(key_, "v", 0, REG_BINARY, nullptr, 3), ERROR_NOACCESS);
    const auto* const x = reinterpret_cast<const BYTE*>("x");
    EXPECT_EQ(RegSetValueExA(key_, std::string(16383, 'n').c_str(), 0, REG_SZ, x, 2), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExA(key_, std::string(16384, 'n').c_str(), 0, REG_SZ, x, 2),
              ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryValues, AreCountedAndListed) {
    set_text(test_key, "one", "1");
    set_text(test_key, "two", "22");
    DWORD count = 0;
    DWORD longest_name = 0;
    EXPECT_EQ(RegQueryInfoKeyA(key_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                               &longest_name, nullptr, nullptr, nullptr),
              ERROR_SUCCESS);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(longest_name, 3U);
    std::map<std::string, std::string> listed;
    for (DWORD index = 0; index < count; ++index) {
        char name[16];
        char data[16];
        DWORD name_size = sizeof name;
        DWORD type = 0;
        DWORD size = sizeof data;
        EXPECT_EQ(RegEnumValueA(key_, index, name, &name_size, nullptr, &type, reinterpret_cast<BYTE*>(data),
                                &size),
                  ERROR_SUCCESS);
        EXPECT_EQ(type, DWORD{REG_SZ});
        listed[name] = std::string(data, size);
    }
    EXPECT_EQ(listed, (std::map<std::string, std::string>{{"one", std::string("1\0", 2)},
                                                          {"two", std::string("22\0", 3)}}));
}

TEST_F(RegistryValues, AreListedOnlyWhereNameAndDataFit) {
    set_text(test_key, "four", "1");
    char name[16];
    DWORD name_size = 4;
    EXPECT_EQ(RegEnumValueA(key_, 0, name, &name_size, nullptr, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    name_size = 5;
    EXPECT_EQ(RegEnumValueA(key_, 0, name, &name_size, nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(name_size, 4U);
    name_size = sizeof name;
    BYTE data[1];
    DWORD size = sizeof data;
    EXPECT_EQ(RegEnumValueA(key_, 0, name, &name_size, nullptr, nullptr, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 2U);
}

} // namespace
