#include "store/common_reg_key.h"
#include "store/delete_reg_key.h"
#include "store/registry_key.h"
#include "substitute/control.h"
#include "support/registry.h"
#include "support/system.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

namespace {

using substitute::fail_call;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::string agent_path = "SOFTWARE\\Agent";

/// Every test ends with all keys closed.
class StoreFailures : public CleanSystem {
protected:
    StoreFailures() {
        make_key(agent_path);
        set_text(agent_path, "Port", "161");
    }
    ~StoreFailures() override { EXPECT_EQ(substitute::open_keys(), 0); }

    static CommonRegKey port() { return {agent_path, "Port", false}; }

    /// The calls that `action` makes.
    template <typename Action> static std::vector<std::string> calls_of(Action action) {
        const std::size_t before = substitute::calls().size();
        action();
        auto made = substitute::calls();
        made.erase(made.begin(), made.begin() + static_cast<std::ptrdiff_t>(before));
        return made;
    }
};

TEST_F(StoreFailures, AValueCostsThreeCalls) {
    CommonRegKey key = port();
    EXPECT_THAT(calls_of([&] { key.read(); }),
                ElementsAre("RegOpenKeyExA", "RegQueryValueExA", "RegCloseKey"));
    EXPECT_THAT(calls_of([&] { key.write(); }),
                ElementsAre("RegOpenKeyExA", "RegSetValueExA", "RegCloseKey"));
    EXPECT_THAT(calls_of([&] { key.set_value("x"); }), IsEmpty());
    EXPECT_THAT(calls_of([&] { key.changed(); }), IsEmpty());
}

TEST_F(StoreFailures, AKeyToDeleteCostsItsProbeAndItsDeletion) {
    DeleteRegKey key(agent_path);
    EXPECT_THAT(calls_of([&] { key.read(); }), ElementsAre("RegOpenKeyExA", "RegCloseKey"));
    EXPECT_THAT(calls_of([&] { key.write(); }), IsEmpty());
    key.request_delete(true);
    EXPECT_THAT(calls_of([&] { key.write(); }), ElementsAre("RegDeleteKeyA"));
    EXPECT_THAT(calls_of([&] { key.write(); }), IsEmpty());
}

TEST_F(StoreFailures, AnEnumerationAsksFromOnePastTheLastValueDownward) {
    std::map<std::string, std::string> target;
    EXPECT_THAT(calls_of([&] { enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path); }),
                ElementsAre("RegOpenKeyExA", "RegQueryInfoKeyA", "RegEnumValueA", "RegEnumValueA",
                            "RegQueryValueExA", "RegCloseKey"));
}

TEST_F(StoreFailures, APathThatIsRefusedIsNamed) {
    CommonRegKey key = port();
    key.set_value("162");
    substitute::deny_key(HKEY_LOCAL_MACHINE, agent_path);
    EXPECT_EQ(thrown_text([&] { key.read(); }), "Cannot open path \"SOFTWARE\\Agent\" for reading");
    EXPECT_EQ(thrown_text([&] { key.write(); }), "Cannot open path \"SOFTWARE\\Agent\" for writing");
    EXPECT_EQ(thrown_text([&] { CommonRegKey(agent_path, "Port", true); }),
              "Cannot open path \"SOFTWARE\\Agent\" for reading");
    std::map<std::string, std::string> target;
    EXPECT_EQ(thrown_text([&] { enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path); }),
              "Cannot read out SOFTWARE\\Agent");
    EXPECT_TRUE(key.changed());
}

TEST_F(StoreFailures, AValueThatCannotBeQueriedIsEmpty) {
    CommonRegKey key = port();
    key.read();
    EXPECT_EQ(key.value(), "161");
    fail_call("RegQueryValueExA");
    key.read();
    EXPECT_EQ(key.value(), "");
    EXPECT_FALSE(key.changed());
}

TEST_F(StoreFailures, AValueThatCannotBeWrittenIsNamedAndStaysChanged) {
    CommonRegKey key = port();
    key.set_value("162");
    fail_call("RegSetValueExA");
    EXPECT_EQ(thrown_text([&] { key.write(); }), "Cannot write key Port");
    EXPECT_TRUE(key.changed());
    EXPECT_EQ(text_value(agent_path, "Port"), "161");
    key.write();
    EXPECT_EQ(text_value(agent_path, "Port"), "162");
}

TEST_F(StoreFailures, AKeyThatCannotBeProbedDoesNotExist) {
    fail_call("RegOpenKeyExA");
    DeleteRegKey key(agent_path);
    EXPECT_FALSE(key.exists());
    key.read();
    EXPECT_TRUE(key.exists());
}

TEST_F(StoreFailures, ADeletionThatFailsIsSilent) {
    DeleteRegKey key(agent_path);
    key.request_delete(true);
    fail_call("RegDeleteKeyA");
    key.write();
    EXPECT_TRUE(key_exists(agent_path));
    EXPECT_TRUE(key.exists());
    EXPECT_TRUE(key.delete_requested());
    EXPECT_TRUE(key.changed());
}

TEST_F(StoreFailures, AnEnumerationWithoutACountThrows) {
    std::map<std::string, std::string> target;
    fail_call("RegQueryInfoKeyA");
    EXPECT_EQ(thrown_text([&] { enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path); }),
              "Cannot get number of keys under SOFTWARE\\Agent");
    EXPECT_THAT(target, IsEmpty());
}

TEST_F(StoreFailures, AnEnumerationSkipsWhatFails) {
    set_text(agent_path, "Second", "2");
    set_text(agent_path, "Third", "3");
    std::map<std::string, std::string> target;
    fail_call("RegEnumValueA", 2); // the first asks past the end, the second for the last value
    enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path);
    EXPECT_THAT(target, ElementsAre(Pair("Port", "161"), Pair("Second", "2")));
    target.clear();
    fail_call("RegQueryValueExA", 2);
    enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path);
    EXPECT_THAT(target, ElementsAre(Pair("Port", "161"), Pair("Third", "3")));
}

TEST_F(StoreFailures, AHundredThousandValuesAreListedAndRead) {
    constexpr int many = 100'000;
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, agent_path.c_str(), 0, KEY_SET_VALUE, &key);
    for (int number = 1; number < many; ++number) {
        const std::string name = "v" + std::to_string(number);
        RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>("text"), 5);
    }
    RegCloseKey(key);
    std::map<std::string, std::string> target;
    enumerate_values(target, HKEY_LOCAL_MACHINE, agent_path);
    EXPECT_EQ(target.size(), std::size_t{many});
    const int before = substitute::call_count("RegQueryValueExA");
    for (const auto& [name, text] : target)
        EXPECT_EQ(CommonRegKey(agent_path, name, true).value(), text);
    EXPECT_EQ(substitute::call_count("RegQueryValueExA") - before, many);
}

} // namespace
