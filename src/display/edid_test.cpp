#include "display/edid.h"

#include <gtest/gtest.h>

#include "display/testing/synthetic_edid.h"

namespace vantle {
namespace {

TEST(EdidTest, ReadsTheMonitorNameWithoutLineFeedAndPadding) {
    EXPECT_EQ(edidMonitorName(testing::syntheticEdid("DELL U2720Q", 1)), "DELL U2720Q");
    EXPECT_EQ(edidMonitorName(testing::syntheticEdid("ThirteenChars", 1)), "ThirteenChars");
}

TEST(EdidTest, NoNameDescriptorOrNoEdidGivesNothing) {
    std::vector<std::uint8_t> edid = testing::syntheticEdid("X", 1);
    edid[72 + 3] = 0xFF;  // turn the name into a serial-number descriptor
    EXPECT_FALSE(edidMonitorName(edid).has_value());
    EXPECT_FALSE(edidMonitorName({}).has_value());
    EXPECT_FALSE(edidMonitorName(std::vector<std::uint8_t>(128, 0)).has_value());
}

TEST(EdidTest, SameMonitorComparesTheBaseBlock) {
    std::vector<std::uint8_t> first = testing::syntheticEdid("A", 1);
    std::vector<std::uint8_t> withExtension = first;
    withExtension.resize(256, 7);
    EXPECT_TRUE(sameMonitor(first, withExtension));
    EXPECT_FALSE(sameMonitor(first, testing::syntheticEdid("A", 2)));
    EXPECT_FALSE(sameMonitor(first, {}));
}

}  // namespace
}  // namespace vantle
