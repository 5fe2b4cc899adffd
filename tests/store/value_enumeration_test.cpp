#include "store/registry_key.h"

#include "support/registry.h"
#include "support/system.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Values = std::map<std::string, std::string>;

class Enumeration : public CleanSystem {
protected:
    Enumeration() { make_key(test_key); }

    static Values listed(Values target = {}) {
        enumerate_values(target, HKEY_LOCAL_MACHINE, test_key);
        return target;
    }
};

TEST_F(Enumeration, ListsNamesAndTexts) {
    EXPECT_THAT(listed(), IsEmpty());
    set_text(test_key, "only", "one");
    EXPECT_THAT(listed(), ElementsAre(Pair("only", "one")));
    set_text(test_key, "Zulu", "last");
    set_text(test_key, "alpha", "C:\\a.spec");
    set_text(test_key, "", "unnamed");
    EXPECT_THAT(listed(), ElementsAre(Pair("", "unnamed"), Pair("Zulu", "last"), Pair("alpha", "C:\\a.spec"),
                                      Pair("only", "one")));
}

TEST_F(Enumeration, AsksForNoType) {
    set_value(test_key, "binary", REG_BINARY, "COM1");
    set_value(test_key, "number", REG_DWORD, std::string("AB\0\0", 4));
    set_value(test_key, "several", REG_MULTI_SZ, std::string("one\0two\0\0", 9));
    set_value(test_key, "untyped", REG_NONE, "raw");
    EXPECT_THAT(listed(), ElementsAre(Pair("binary", "COM1"), Pair("number", "AB"), Pair("several", "one"),
                                      Pair("untyped", "raw")));
}

TEST_F(Enumeration, SkipsEmptyTexts) {
    set_value(test_key, "nothing", REG_SZ, "");
    set_text(test_key, "empty", "");
    set_value(test_key, "zero", REG_DWORD, std::string(4, '\0'));
    set_text(test_key, "kept", "x");
    EXPECT_THAT(listed(), ElementsAre(Pair("kept", "x")));
}

TEST_F(Enumeration, SkipsDataBeyondItsBuffer) {
    set_value(test_key, "a1023", REG_SZ, std::string(1022, 'a') + '\0');
    set_value(test_key, "b1024", REG_SZ, std::string(1023, 'b') + '\0');
    set_value(test_key, "c1024", REG_BINARY, std::string(1024, 'c'));
    set_value(test_key, "d1025", REG_SZ, std::string(1024, 'd') + '\0');
    EXPECT_THAT(listed(),
                ElementsAre(Pair("a1023", std::string(1022, 'a')), Pair("b1024", std::string(1023, 'b')),
                            Pair("c1024", std::string(1023, 'c'))));
}

TEST_F(Enumeration, SkipsNamesBeyondItsBuffer) {
    set_text(test_key, std::string(1023, 'n'), "fits");
    set_text(test_key, std::string(1024, 'm'), "does not");
    set_text(test_key, "z", "short");
    EXPECT_THAT(listed(), ElementsAre(Pair(std::string(1023, 'n'), "fits"), Pair("z", "short")));
}

TEST_F(Enumeration, LeavesNamesThatAreThereAlready) {
    set_text(test_key, "known", "new");
    set_text(test_key, "other", "added");
    EXPECT_THAT(listed({{"known", "old"}, {"more", "kept"}}),
                ElementsAre(Pair("known", "old"), Pair("more", "kept"), Pair("other", "added")));
}

TEST_F(Enumeration, ThrowsWhenTheKeyCannotBeRead) {
    Values target = {{"kept", "x"}};
    EXPECT_EQ(thrown_text([&] { enumerate_values(target, HKEY_LOCAL_MACHINE, test_key + "\\Missing"); }),
              "Cannot read out SOFTWARE\\TavrinTests\\Missing");
    EXPECT_THAT(target, ElementsAre(Pair("kept", "x")));
}

TEST_F(Enumeration, ListsManyValues) {
    for (int number = 0; number < 1000; ++number)
        set_text(test_key, "v" + std::to_string(number), "t" + std::to_string(number));
    const Values values = listed();
    EXPECT_EQ(values.size(), 1000U);
    EXPECT_EQ(values.at("v0"), "t0");
    EXPECT_EQ(values.at("v999"), "t999");
}

} // namespace
