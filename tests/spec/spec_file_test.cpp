#include "spec/spec_text.h"

#include "spec/configuration.h"
#include "support/scratch_folder.h"
#include "support/spec_text.h"
#include "support/thrown.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <fstream>

namespace {

using namespace std::string_literals;
using testing::IsEmpty;

const ScratchFolder scratch;
const std::string path = scratch.path_of("file.spec");
constexpr std::size_t hundred_megabytes = 100'000'000;

class SpecFile : public testing::Test {
protected:
    ~SpecFile() override { std::remove(path.c_str()); }

    static void write(const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

    static std::string failure(const std::string& file, bool connection_test_only) {
        return thrown_text([&] { const Configuration made("value name", file, connection_test_only); });
    }
};

TEST_F(SpecFile, IsReadByteByByte) {
    const std::string bytes = "\r\n\x1B\0\xFF\r\r\n\n\rend"s;
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
}

TEST_F(SpecFile, EndsBeforeAByte26) {
    write("X\nAgent\n!G\n\x1A");
    EXPECT_EQ(read_spec_file(path), "X\nAgent\n!G\n");
    write("X\r\n\r\x1A\n!G\n\x1A");
    EXPECT_EQ(read_spec_file(path), "X\r\n\r");
    write("\x1AX\n");
    EXPECT_EQ(read_spec_file(path), "");
}

TEST_F(SpecFile, OfManyChunksEndsBeforeAByte26) {
    const std::string before(70000, 'x');
    write(before + '\x1A' + std::string(70000, 'y') + "\x1Az");
    EXPECT_TRUE(read_spec_file(path) == before);
}

/// `copy a.spec+b.spec c.spec` leaves such a byte behind the last line.
TEST_F(SpecFile, ThatCopyHasJoinedParses) {
    write("X\r\nAgent\r\nService\r\n!G\r\n\r\n\x1A");
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.serviceName, "Service");
    EXPECT_EQ(describe(configuration), "!G\n");
}

TEST_F(SpecFile, MayBeEmpty) {
    write("");
    EXPECT_EQ(read_spec_file(path), "");
}

TEST_F(SpecFile, OfManyChunksIsReadWhole) {
    std::string bytes;
    for (int i = 0; i < 60000; ++i)
        bytes += "line " + std::to_string(i) + "\r\n";
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
    bytes.resize(65536);
    write(bytes);
    EXPECT_EQ(read_spec_file(path), bytes);
}

TEST_F(SpecFile, MissingOrADirectoryIsNoFile) {
    EXPECT_EQ(read_spec_file("no such file"), std::nullopt);
    EXPECT_EQ(read_spec_file(""), std::nullopt);
    EXPECT_EQ(read_spec_file("."), std::nullopt);
}

TEST_F(SpecFile, MayBeHeldOpenByAnotherProgram) {
    write("X\nAgent\n!G\n");
    std::fstream other(path, std::ios::in | std::ios::out | std::ios::binary);
    ASSERT_TRUE(other.is_open());
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.name, "Agent");
    EXPECT_EQ(describe(configuration), "!G\n");
}

TEST_F(SpecFile, IsClosedAfterTheParse) {
    write("X\nAgent\n");
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(std::remove(path.c_str()), 0);
    EXPECT_EQ(configuration.name, "Agent");
}

TEST_F(SpecFile, ThatCannotBeOpenedGivesAnEmptyConfiguration) {
    for (const char* file : {"no such file", "."}) {
        const Configuration configuration("value name", file, false);
        EXPECT_EQ(configuration.name, "");
        EXPECT_EQ(configuration.registryPath, "");
        EXPECT_THAT(configuration.groups, IsEmpty());
    }
}

TEST_F(SpecFile, ThatCannotBeOpenedIsAnErrorForTheConnectionTestAlone) {
    EXPECT_EQ(failure("no such file", true), "Unable to open file: no such file");
    EXPECT_EQ(failure(".", true), "Unable to open file: .");
    EXPECT_EQ(failure("no such file", false), "nothing thrown");
}

TEST_F(SpecFile, OfTheOldSyntaxIsCalledLikeItsRegistryValue) {
    write("X\r\n!G\r\n");
    EXPECT_EQ(Configuration("value name", path, false).name, "value name");
}

TEST_F(SpecFile, ThatDoesNotParseThrows) {
    write("X\nAgent\nService\nrest\n");
    EXPECT_EQ(failure(path, false), "Parse error: line \"rest\" not group start");
}

TEST_F(SpecFile, OfOneEndlessLineIsARegistryPath) {
    write(std::string(hundred_megabytes, 'x'));
    const Configuration configuration("value name", path, false);
    EXPECT_EQ(configuration.registryPath.size(), hundred_megabytes);
    EXPECT_EQ(configuration.name, "");
}

TEST_F(SpecFile, OfAHundredMegabytesIsParsed) {
    const std::string subspec = "$A title\nValue\n" + std::string(79, 'h') + "\nString\n";
    std::string bytes = "X\nAgent\n!G\n";
    while (bytes.size() < hundred_megabytes)
        bytes += subspec;
    write(bytes + "\n!H\n$L\nL\nh\nServerList\n");
    EXPECT_EQ(describe(Configuration("value name", path, true)), "!G\n!H\nServerList|L|h\n");
}

} // namespace
