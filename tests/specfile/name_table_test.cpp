#include "specfile/name_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(NameTable, GrowsBeyondTheExpectedNumberOfNames) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < 1000; ++i)
        names.push_back("Value" + std::to_string(i));
    NameTable table(false, 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(table.add(names[i], i + 1), 0U);
        EXPECT_EQ(table.find("Missing"), 0U);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(table.find(names[i]), i + 1);
        EXPECT_EQ(table.add(names[i], 5000), i + 1);
    }
}

TEST(NameTable, IgnoresTheCaseOfAsciiLettersOnlyWhereItIsTold) {
    NameTable exact(false);
    EXPECT_EQ(exact.add("Port", 3), 0U);
    EXPECT_EQ(exact.add("PORT", 4), 0U);
    EXPECT_EQ(exact.find("Port"), 3U);
    NameTable folded(true);
    EXPECT_EQ(folded.add("Port", 3), 0U);
    EXPECT_EQ(folded.add("PORT", 4), 3U);
    // "@" and "`" differ in the same bit as "A" and "a".
    EXPECT_EQ(folded.add("@", 5), 0U);
    EXPECT_EQ(folded.add("`", 6), 0U);
}

} // namespace
