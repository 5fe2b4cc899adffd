#include "store/common_reg_key.h"

#include "store/data_manipulator.h"
#include "support/registry.h"
#include "support/system.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

using testing::Optional;

const std::string missing_key = test_key + "\\Missing";

class CommonRegKeys : public CleanSystem {
protected:
    CommonRegKeys() { make_key(test_key); }

    static CommonRegKey opened(std::string_view name = "v") { return {test_key, name, true}; }
    /// The text that is read from a value with these bytes.
    static std::string read_of(DWORD type, const std::string& bytes) {
        set_value(test_key, "v", type, bytes);
        const CommonRegKey key = opened();
        EXPECT_FALSE(key.changed());
        return key.value();
    }
    /// The bytes that are stored for a text.
    static RawValue written_of(const std::string& text) {
        CommonRegKey key(test_key, "v", false);
        key.set_value(text);
        key.write();
        EXPECT_FALSE(key.changed());
        return raw_value(test_key, "v").value_or(RawValue{0, "nothing written"});
    }
};

TEST_F(CommonRegKeys, ReadAtOnceWhenTold) {
    set_text(test_key, "v", "agent7");
    EXPECT_EQ(opened().value(), "agent7");
    CommonRegKey later(test_key, "v", false);
    EXPECT_EQ(later.value(), "");
    EXPECT_FALSE(later.changed());
    later.read();
    EXPECT_EQ(later.value(), "agent7");
    EXPECT_FALSE(later.changed());
}

TEST_F(CommonRegKeys, ThrowWhenThePathCannotBeRead) {
    const std::string text = "Cannot open path \"SOFTWARE\\TavrinTests\\Missing\" for reading";
    EXPECT_EQ(thrown_text([] { CommonRegKey(missing_key, "v", true); }), text);
    CommonRegKey key(missing_key, "v", false);
    key.set_value("edited");
    EXPECT_EQ(thrown_text([&] { key.read(); }), text);
    EXPECT_EQ(key.value(), "edited");
    EXPECT_TRUE(key.changed());
}

TEST_F(CommonRegKeys, ReadAMissingValueAsEmpty) {
    EXPECT_EQ(opened("missing").value(), "");
    CommonRegKey key = opened("missing");
    key.set_value("edited");
    key.read();
    EXPECT_EQ(key.value(), "");
    EXPECT_FALSE(key.changed());
}

TEST_F(CommonRegKeys, ReadTheBytesOfEveryTypeUpToTheFirstZero) {
    for (const DWORD type :
         {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_LINK, REG_MULTI_SZ, REG_QWORD}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(read_of(type, ""), "");
        EXPECT_EQ(read_of(type, "a"), "a");
        EXPECT_EQ(read_of(type, std::string("a\0", 2)), "a");
        EXPECT_EQ(read_of(type, std::string("\0", 1)), "");
        EXPECT_EQ(read_of(type, "%PATH%\xE4"), "%PATH%\xE4");
        EXPECT_EQ(read_of(type, std::string("one\0two\0\0", 9)), "one");
    }
}

TEST_F(CommonRegKeys, ReadAllThatFitsIntoTheBuffer) {
    for (const DWORD type : {REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_MULTI_SZ}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(read_of(type, std::string(1022, 'a')), std::string(1022, 'a'));
        EXPECT_EQ(read_of(type, std::string(1022, 'a') + '\0'), std::string(1022, 'a'));
        EXPECT_EQ(read_of(type, std::string(1023, 'a')), std::string(1023, 'a'));
        EXPECT_EQ(read_of(type, std::string(1023, 'a') + '\0'), std::string(1023, 'a'));
        EXPECT_EQ(read_of(type, std::string(1024, 'a')), std::string(1023, 'a')) << "cut by one";
        EXPECT_EQ(read_of(type, std::string(1024, 'a') + '\0'), "") << "1,025 bytes do not fit";
        EXPECT_EQ(read_of(type, std::string(1025, 'a')), "");
        EXPECT_EQ(read_of(type, "a" + std::string(1024, '\0')), "");
    }
}

TEST_F(CommonRegKeys, AreChangedExactlyWhileTheTextDiffersFromTheStoredOne) {
    set_text(test_key, "v", "Text");
    CommonRegKey key = opened();
    key.set_value("text");
    EXPECT_TRUE(key.changed());
    key.set_value("Text");
    EXPECT_FALSE(key.changed());
    key.set_value("Text ");
    EXPECT_TRUE(key.changed());
    key.set_value("");
    EXPECT_TRUE(key.changed());
    key.read();
    EXPECT_EQ(key.value(), "Text");
    EXPECT_FALSE(key.changed());
}

TEST_F(CommonRegKeys, WriteTextWithItsTerminator) {
    EXPECT_EQ(written_of("agent7"), (RawValue{REG_SZ, std::string("agent7\0", 7)}));
    EXPECT_EQ(written_of(""), (RawValue{REG_SZ, std::string("\0", 1)}));
    EXPECT_EQ(written_of("\xE4\xFF"), (RawValue{REG_SZ, std::string("\xE4\xFF\0", 3)}));
    EXPECT_EQ(written_of(std::string("a\0b", 3)), (RawValue{REG_SZ, std::string("a\0", 2)}));
}

TEST_F(CommonRegKeys, WriteAtMost1024Bytes) {
    EXPECT_EQ(written_of(std::string(1022, 'x')), (RawValue{REG_SZ, std::string(1022, 'x') + '\0'}));
    EXPECT_EQ(written_of(std::string(1023, 'x')), (RawValue{REG_SZ, std::string(1023, 'x') + '\0'}));
    EXPECT_EQ(written_of(std::string(1024, 'x')), (RawValue{REG_SZ, std::string(1024, 'x')}));
    EXPECT_EQ(written_of(std::string(1025, 'x')), (RawValue{REG_SZ, std::string(1024, 'x')}));
    EXPECT_EQ(written_of(std::string(100000, 'x')), (RawValue{REG_SZ, std::string(1024, 'x')}));
}

TEST_F(CommonRegKeys, ReadBackWhatTheyWroteUpTo1023Characters) {
    for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 1025U}) {
        written_of(std::string(length, 'x'));
        EXPECT_EQ(opened().value(), std::string(length < 1023 ? length : 1023, 'x')) << length;
    }
}

TEST_F(CommonRegKeys, TurnANumberIntoTextOnceEdited) {
    set_value(test_key, "v", REG_DWORD, std::string("AB\0\0", 4));
    CommonRegKey key = opened();
    EXPECT_EQ(key.value(), "AB");
    key.set_value("ABC");
    key.write();
    EXPECT_THAT(raw_value(test_key, "v"), Optional(RawValue{REG_SZ, std::string("ABC\0", 4)}));
}

TEST_F(CommonRegKeys, WriteUnchangedValuesToo) {
    set_value(test_key, "v", REG_BINARY, "same");
    CommonRegKey key = opened();
    EXPECT_FALSE(key.changed());
    key.write();
    EXPECT_THAT(raw_value(test_key, "v"), Optional(RawValue{REG_SZ, std::string("same\0", 5)}));
}

TEST_F(CommonRegKeys, NeverCreateTheKey) {
    CommonRegKey key(missing_key, "v", false);
    key.set_value("edited");
    EXPECT_EQ(thrown_text([&] { key.write(); }),
              "Cannot open path \"SOFTWARE\\TavrinTests\\Missing\" for writing");
    EXPECT_FALSE(key_exists(missing_key));
    EXPECT_TRUE(key.changed());
}

TEST_F(CommonRegKeys, ThrowWhenTheValueIsNotWritten) {
    const std::string name(16384, 'n'); // longer than the registry allows
    CommonRegKey key(test_key, name, false);
    key.set_value("edited");
    EXPECT_EQ(thrown_text([&] { key.write(); }), "Cannot write key " + name);
    EXPECT_TRUE(key.changed());
}

TEST_F(CommonRegKeys, EditTheKeysUnnamedValue) {
    CommonRegKey key = opened("");
    key.set_value("default");
    key.write();
    EXPECT_EQ(text_value(test_key, ""), "default");
}

struct StandInBase : virtual DataManipulator {};
struct StandInEntry : StandInBase, CommonRegKey {
    StandInEntry() : CommonRegKey(test_key, "v", false) {}
};

TEST_F(CommonRegKeys, ShareOneBaseWithTheEntry) {
    StandInEntry entry;
    DataManipulator& store = static_cast<StandInBase&>(entry);
    entry.set_value("edited");
    EXPECT_TRUE(store.changed());
    store.write();
    EXPECT_FALSE(entry.changed());
    EXPECT_EQ(text_value(test_key, "v"), "edited");
}

TEST(NoDataManipulators, HoldNothing) {
    NoDataManipulator none;
    none.read();
    none.write();
    EXPECT_FALSE(none.changed());
}

} // namespace
