#include "localization/describe.h"

#include <gtest/gtest.h>

#include "localization/localization.h"

namespace vantle {
namespace {

TEST(DescribeTest, FloatsInShortestFormWithAFraction) {
    EXPECT_EQ(shortestDecimal(1.0f), "1.0");
    EXPECT_EQ(shortestDecimal(0.0f), "0.0");
    EXPECT_EQ(shortestDecimal(0.5f), "0.5");
    EXPECT_EQ(shortestDecimal(0.1f), "0.1");
    EXPECT_EQ(shortestDecimal(0.7362891f), "0.7362891");
    EXPECT_EQ(shortestDecimal(0.1), "0.1");
    EXPECT_EQ(shortestDecimal(1e-05f), "1e-05");
}

TEST(DescribeTest, ShortestFormReadsBackAsTheSameFloat) {
    for (float level = 0.0f; level <= 1.0f; level += 0.0137f) {
        EXPECT_EQ(std::stof(shortestDecimal(level)), level);
    }
}

TEST(DescribeTest, ArgumentsOfEveryKind) {
    EXPECT_EQ(describe(7), "7");
    EXPECT_EQ(describe(std::size_t{12}), "12");
    EXPECT_EQ(describe(-3L), "-3");
    EXPECT_EQ(describe("text"), "text");
    EXPECT_EQ(describe(std::string("s")), "s");
    EXPECT_EQ(describe(true), "true");
    EXPECT_EQ(describe(2.0), "2.0");
}

}  // namespace
}  // namespace vantle
