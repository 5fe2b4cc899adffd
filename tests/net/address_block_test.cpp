#include "net/address_text.h"

#include "platform/win32.h"
#include "support/short_memory.h"

#include <gmock/gmock.h>
#include <string>

namespace {

using testing::ElementsAre;

/// The block with its last zero byte; `size` is what it should hold, without that byte.
std::string finished(net::AddressBlock& block, std::size_t size) {
    const std::unique_ptr<char, net::FreeMemory> text(block.finish());
    return text == nullptr ? "no memory" : std::string(text.get(), size + 1);
}

/// 201.201.201.`last`: with its zero byte a quarter of the first block.
std::uint32_t quarter(unsigned last) { return htonl(0xC9C9C900U + last); }

void add_quarters(net::AddressBlock& block, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        EXPECT_TRUE(block.add(quarter(200 + i)));
}

TEST(AddressBlock, IsOneZeroByteWhenNobodyAnswered) {
    const ShortMemory memory(0);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    EXPECT_EQ(finished(block, 0), std::string("\0", 1));
    EXPECT_THAT(memory.sizes(), ElementsAre(64));
}

TEST(AddressBlock, HoldsAddressesInTheOrderOfTheirArrival) {
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    EXPECT_TRUE(block.add(htonl(0x0A000002)));
    EXPECT_TRUE(block.add(htonl(0x0A000001)));
    EXPECT_TRUE(block.add(htonl(0xFFFFFFFF)));
    EXPECT_TRUE(block.add(htonl(0)));
    EXPECT_EQ(finished(block, 42), std::string("10.0.0.2\0"
                                               "10.0.0.1\0"
                                               "255.255.255.255\0"
                                               "0.0.0.0\0\0",
                                               43));
}

TEST(AddressBlock, HoldsEachAddressOnce) {
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    for (const unsigned each : {1, 2, 1, 12, 2, 1})
        EXPECT_TRUE(block.add(htonl(0x0A000000U + each)));
    EXPECT_EQ(finished(block, 28), std::string("10.0.0.1\0"
                                               "10.0.0.2\0"
                                               "10.0.0.12\0\0",
                                               29));
}

TEST(AddressBlock, DoesNotGrowWhileItsEndFits) {
    const ShortMemory memory(0);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    add_quarters(block, 3);
    EXPECT_TRUE(block.add(htonl(0x6464640A))); // 100.100.100.10: 63 bytes in all
    EXPECT_EQ(finished(block, 63).back(), '\0');
    EXPECT_THAT(memory.sizes(), ElementsAre(64));
}

TEST(AddressBlock, GrowsByOneByteForItsEndWhenItIsFull) {
    const ShortMemory memory(0);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    add_quarters(block, 4);
    EXPECT_EQ(finished(block, 64), std::string("201.201.201.200\0"
                                               "201.201.201.201\0"
                                               "201.201.201.202\0"
                                               "201.201.201.203\0\0",
                                               65));
    EXPECT_THAT(memory.sizes(), ElementsAre(64, 65));
}

TEST(AddressBlock, DoublesWhenATextDoesNotFit) {
    const ShortMemory memory(0);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    add_quarters(block, 17);
    EXPECT_EQ(finished(block, 272).substr(256), std::string("201.201.201.216\0\0", 17));
    EXPECT_THAT(memory.sizes(), ElementsAre(64, 128, 256, 512));
}

TEST(AddressBlock, HoldsThousands) {
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    std::string expected;
    for (std::uint32_t i = 0; i < 2000; ++i) {
        EXPECT_TRUE(block.add(htonl(0x0A000000 + i)));
        expected += "10.0." + std::to_string(i / 256) + "." + std::to_string(i % 256) + '\0';
    }
    EXPECT_TRUE(finished(block, expected.size()) == expected + '\0');
}

TEST(AddressBlock, ReportsThatItCannotOpen) {
    const ShortMemory memory(1);
    net::AddressBlock block;
    EXPECT_FALSE(block.open());
}

TEST(AddressBlock, ReportsThatItCannotDouble) {
    const ShortMemory memory(2);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    add_quarters(block, 4);
    EXPECT_FALSE(block.add(quarter(1)));
}

TEST(AddressBlock, ReportsThatItCannotEnd) {
    const ShortMemory memory(2);
    net::AddressBlock block;
    EXPECT_TRUE(block.open());
    add_quarters(block, 4);
    EXPECT_EQ(block.finish(), nullptr);
}

} // namespace
