#include "app/relaunch_parent.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

std::optional<int> parentOf(std::vector<std::string> arguments) {
    return relaunchParent(arguments);
}

TEST(RelaunchParentTest, DecimalProcessIdAfterTheSwitchIsWaitedFor) {
    EXPECT_EQ(parentOf({"--relaunch-parent", "4242"}), 4242);
    EXPECT_EQ(parentOf({"--show-settings", "--relaunch-parent", "+17"}), 17);
    EXPECT_EQ(parentOf({"--relaunch-parent", "2147483647"}), 2147483647);
}

TEST(RelaunchParentTest, ZeroNegativeAndNonNumbersStartAtOnce) {
    EXPECT_FALSE(parentOf({"--relaunch-parent", "0"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "-5"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "abc"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", ""}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", " 12"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "12 "}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "12x"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "+"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "+-3"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent", "2147483648"}));
}

TEST(RelaunchParentTest, MissingOrLastSwitchStartsAtOnce) {
    EXPECT_FALSE(parentOf({}));
    EXPECT_FALSE(parentOf({"--show-settings"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent"}));
    EXPECT_FALSE(parentOf({"--relaunch-parent=12"}));
}

TEST(RelaunchParentTest, OnlyTheFirstSwitchCounts) {
    EXPECT_FALSE(parentOf({"--relaunch-parent", "abc", "--relaunch-parent", "12"}));
}

}  // namespace
}  // namespace vantle
