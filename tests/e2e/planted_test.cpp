#include "e2e/fixture.h"

#include <filesystem>

namespace e2e {
namespace {

const TreePath named_servers = {"Tavrin Agent", "Servers", "Server list"};

/// A folder with a program and a planted DLL, and a system that is set to load such DLLs from where they are;
/// unlike Windows, Wine would prefer its own.
class Planted : public Sample {
protected:
    Planted() : folder_(std::filesystem::temp_directory_path() / "planted") {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directory(folder_);
        std::filesystem::copy_file(built("tests\\planted.dll"), folder_ / "iphlpapi.dll");
    }
    ~Planted() override {
        std::filesystem::remove_all(folder_);
        RegDeleteTreeA(HKEY_CURRENT_USER, overrides);
    }

    static std::filesystem::path built(const std::string& file) { return program_folder() + "\\" + file; }

    /// A copy of the program beside the planted DLL.
    std::string beside(const std::string& program) {
        const std::string name = "beside_planted.exe";
        std::filesystem::copy_file(built(program), folder_ / name);
        allow_planted(overrides);
        return "\"" + (folder_ / name).string() + "\"";
    }
    bool planted_was_loaded() const { return std::filesystem::exists(folder_ / "iphlpapi.dll.loaded"); }

private:
    static constexpr char overrides[] = "Software\\Wine\\AppDefaults\\beside_planted.exe\\DllOverrides";

    static void allow_planted(const char* key) {
        const char order[] = "native,builtin";
        ASSERT_EQ(RegSetKeyValueA(HKEY_CURRENT_USER, key, "iphlpapi", REG_SZ, order, sizeof order),
                  ERROR_SUCCESS);
    }

    std::filesystem::path folder_;
};

TEST_F(Planted, IsLoadedByACarelessProgram) {
    Process careless(beside("tests\\careless.exe"));
    EXPECT_EQ(careless.exit_code(limit), 1U);
    EXPECT_TRUE(planted_was_loaded());
}

TEST_F(Planted, IsNotLoadedByTheTool) {
    if (environment("TAVRIN_STAGE").empty())
        GTEST_SKIP() << "no sample servers: run through script/isolated tests/e2e/stage";
    Tool tool(beside("tavrinconfig.exe"));
    tool.select(named_servers);
    tool.press_on_page("Server list", "Scan"); // asks for the networks
    tool.expect_changes(true);
    EXPECT_FALSE(planted_was_loaded());
}

TEST_F(Planted, IsNotLoadedByTheCommandLine) {
    Process scan(beside("tavrinctl.exe") + " scan --port 5999"); // asks for the networks
    EXPECT_EQ(scan.exit_code(limit), 0U);
    EXPECT_FALSE(planted_was_loaded());
}

} // namespace
} // namespace e2e
