// The setup of an agent, made from the snippet in the guide for spec files.
#include "e2e/agent.h"
#include "e2e/installer/setup.h"

#include <gtest/gtest.h>

namespace e2e {
namespace {

constexpr char agent_key[] = "SOFTWARE\\Example\\Agent";

class VendorsSetup : public testing::Test {
protected:
    void TearDown() override {
        delete_key("SOFTWARE\\Example");
        delete_key("SOFTWARE\\Tavrin");
        std::filesystem::remove_all(environment("ProgramFiles") + "\\Example");
    }
    static DWORD install() { return run_to_end("\"" + environment("TAVRIN_VENDORS_SETUP") + "\" /S"); }
};

TEST_F(VendorsSetup, RegistersTheSpecFileAndMakesTheKey) {
    ASSERT_EQ(install(), 0U);
    EXPECT_EQ(read_value(list_key, "Example"), environment("ProgramFiles") + "\\Example\\agent.spec");
    EXPECT_EQ(
        RegGetValueA(HKEY_LOCAL_MACHINE, agent_key, "AgentName", RRF_RT_REG_SZ, nullptr, nullptr, nullptr),
        ERROR_SUCCESS);
}

TEST_F(VendorsSetup, KeepsWhatAnAdministratorHasSet) {
    write_value(agent_key, "AgentName", "mine");
    ASSERT_EQ(install(), 0U);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "mine");
}

} // namespace
} // namespace e2e
