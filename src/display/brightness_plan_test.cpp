#include "display/brightness_plan.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vantle {
namespace {

using ControlPlan::brightness;
using Plan = std::vector<ControlPlan::PlannedLevel>;

void expectPlan(const Plan& actual, const Plan& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t index = 0; index < actual.size(); ++index) {
        EXPECT_EQ(actual[index].first, expected[index].first);
        EXPECT_NEAR(actual[index].second, expected[index].second, 1e-6);
    }
}

TEST(BrightnessPlanTest, LinkedDisplaysTakeTheFirstLevelPlusTheStep) {
    expectPlan(brightness({{1, 0.2f}, {2, 0.6f}}, true, 0.1f), {{1, 0.3f}, {2, 0.3f}});
}

TEST(BrightnessPlanTest, UnlinkedDisplaysKeepTheirOffsets) {
    expectPlan(brightness({{1, 0.2f}, {2, 0.6f}}, false, 0.1f), {{1, 0.3f}, {2, 0.7f}});
    expectPlan(brightness({{1, 0.95f}, {2, 0.5f}}, false, 0.1f), {{1, 1.0f}, {2, 0.6f}});
}

TEST(BrightnessPlanTest, SevenDisplaysGiveNoPlan) {
    std::vector<ControlPlan::DisplayLevel> seven;
    for (std::uint32_t id = 1; id <= 7; ++id) {
        seven.emplace_back(id, 0.5f);
    }
    EXPECT_TRUE(brightness(seven, true, 0.1f).empty());
    seven.pop_back();
    EXPECT_EQ(brightness(seven, true, 0.1f).size(), 6u);
}

TEST(BrightnessPlanTest, SevenCountedBeforeUnreadableOnesAreDropped) {
    std::vector<ControlPlan::DisplayLevel> seven{{1, 0.5f}};
    for (std::uint32_t id = 2; id <= 7; ++id) {
        seven.emplace_back(id, std::nullopt);
    }
    EXPECT_TRUE(brightness(seven, true, 0.1f).empty());
}

TEST(BrightnessPlanTest, UnreadableDisplaysAreLeftOutAndTheFirstReadableIsTheBase) {
    expectPlan(brightness({{1, std::nullopt}, {2, 0.4f}, {3, 0.8f}}, true, -0.1f), {{2, 0.3f}, {3, 0.3f}});
    expectPlan(brightness({{1, std::nanf("")}, {2, 0.4f}}, true, 0.0f), {{2, 0.4f}});
}

TEST(BrightnessPlanTest, NothingReadableOrNothingAtAllGivesNoPlan) {
    EXPECT_TRUE(brightness({}, true, 0.1f).empty());
    EXPECT_TRUE(brightness({{1, std::nullopt}}, false, 0.1f).empty());
}

TEST(BrightnessPlanTest, ResultsAreClamped) {
    expectPlan(brightness({{1, 0.05f}}, false, -0.1f), {{1, 0.0f}});
    expectPlan(brightness({{1, 0.5f}}, false, std::nanf("")), {{1, 0.0f}});
}

}  // namespace
}  // namespace vantle
