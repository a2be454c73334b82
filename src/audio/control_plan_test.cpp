#include "audio/control_plan.h"

#include <gtest/gtest.h>

#include <map>

namespace vantle {
namespace {

using Tree = std::map<std::uint32_t, std::vector<std::uint32_t>>;

std::vector<std::uint32_t> leaves(std::uint32_t root, const Tree& tree) {
    return ControlPlan::audioLeaves(root, [&tree](std::uint32_t id) {
        auto found = tree.find(id);
        return found == tree.end() ? std::vector<std::uint32_t>{} : found->second;
    });
}

TEST(AudioLeavesTest, PlainDeviceIsItsOwnLeaf) {
    EXPECT_EQ(leaves(7, {}), std::vector<std::uint32_t>{7});
}

TEST(AudioLeavesTest, NestedAggregateGivesThreeLeavesSorted) {
    EXPECT_EQ(leaves(100, {{100, {40, 90}}, {90, {30, 20}}}), (std::vector<std::uint32_t>{20, 30, 40}));
}

TEST(AudioLeavesTest, CycleGivesNothing) {
    EXPECT_TRUE(leaves(1, {{1, {2}}, {2, {1}}}).empty());
    EXPECT_TRUE(leaves(1, {{1, {3, 2}}, {2, {2}}}).empty());
}

TEST(AudioLeavesTest, SixLeavesAreAcceptedSevenAreNot) {
    EXPECT_EQ(leaves(1, {{1, {2, 3, 4, 5, 6, 7}}}).size(), 6u);
    EXPECT_TRUE(leaves(1, {{1, {2, 3, 4, 5, 6, 7, 8}}}).empty());
}

TEST(AudioLeavesTest, DeviceUnderTwoParentsIsOneLeaf) {
    EXPECT_EQ(leaves(1, {{1, {2, 3}}, {2, {9}}, {3, {9}}}), std::vector<std::uint32_t>{9});
}

}  // namespace
}  // namespace vantle
