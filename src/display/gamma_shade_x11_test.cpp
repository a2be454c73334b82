#include <gtest/gtest.h>

#include "display/gamma_shade_x11.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

TEST(GammaRampTest, DimmingScalesByOneMinusAlpha) {
    const GammaRamp original{{0, 1000, 65535}, {0, 2000, 65535}, {0, 3000, 65535}};
    // The shade's alpha at level 0.5 is 0.425: the ramp keeps 0.575 = 0.15 + 0.85 × 0.5.
    const GammaRamp dimmed = dimmedRamp(original, 0.425);
    EXPECT_EQ(dimmed.red, (std::vector<std::uint16_t>{0, 575, 37683}));
    EXPECT_EQ(dimmed.blue[1], 1725);
    EXPECT_EQ(dimmedRamp(original, 0.0), original);
    // The darkest shade keeps 15 %.
    EXPECT_EQ(dimmedRamp(original, 0.85).green[2], 9830);
}

TEST(GammaRampTest, SavedRampsSurviveOnDiskUntilRemoved) {
    testing::TemporaryDirectory directory;
    SavedGammaRamps saved(directory.path(), ":7");
    const GammaRamp ramp{{1, 2, 3}, {4, 5, 6}, {7, 8, 65535}};
    ASSERT_TRUE(saved.save("DP-1", ramp));
    EXPECT_EQ(SavedGammaRamps(directory.path(), ":7").load("DP-1"), ramp);
    EXPECT_EQ(saved.outputs(), std::vector<std::string>{"DP-1"});
    EXPECT_TRUE(SavedGammaRamps(directory.path(), ":8").outputs().empty());
    saved.remove("DP-1");
    EXPECT_FALSE(saved.load("DP-1").has_value());
}

TEST(GammaRampTest, DamagedSavedRampIsNotUsed) {
    testing::TemporaryDirectory directory;
    SavedGammaRamps saved(directory.path(), ":7");
    testing::writeFile(directory.path() / ":7-DP-1.gamma", "1 2 3\n4 5\n");
    EXPECT_FALSE(saved.load("DP-1").has_value());
    testing::writeFile(directory.path() / ":7-DP-1.gamma", "1 2 3\n4 5 6\n7 8 70000\n");
    EXPECT_FALSE(saved.load("DP-1").has_value());
}

}  // namespace
}  // namespace vantle
