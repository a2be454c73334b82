#include "display/switching_shade.h"

#include <gtest/gtest.h>

#include "display/testing/fake_displays.h"

namespace vantle {
namespace {

using testing::FakeShadeFactory;
using testing::ShadeState;

constexpr std::uint32_t kWindows = 1;
constexpr std::uint32_t kGamma = 2;

// Window shades are made as display kWindows of the fake factory, gamma shades as kGamma, so that
// each way's panels can be told apart; gamma cannot dim when gammaPossible is false.
class SwitchingShadeTest : public ::testing::Test {
protected:
    SwitchingShade::Maker maker() {
        return [this](bool composited) -> std::unique_ptr<ShadePanel> {
            if (!composited && !gammaPossible) {
                return nullptr;
            }
            return factory.makePanel(composited ? kWindows : kGamma, {});
        };
    }

    FakeShadeFactory factory;
    bool gammaPossible = true;
};

TEST_F(SwitchingShadeTest, ShownShadeMovesToTheRampWithItsFrameAndAlphaAndBack) {
    SwitchingShade shade(maker(), true);
    shade.setUp({0, 0, 1920, 1080});
    shade.setAlpha(0.425);
    shade.orderFrontRegardless();

    shade.useCompositor(false);
    const ShadeState& window = factory.latest(kWindows);
    EXPECT_FALSE(window.shown);
    EXPECT_TRUE(window.destroyed);
    const ShadeState& gamma = factory.latest(kGamma);
    EXPECT_EQ(gamma.frame, (ScreenFrame{0, 0, 1920, 1080}));
    EXPECT_DOUBLE_EQ(gamma.alpha, 0.425);
    EXPECT_TRUE(gamma.shown);

    shade.useCompositor(true);
    EXPECT_TRUE(factory.latest(kGamma).destroyed);
    EXPECT_FALSE(factory.latest(kGamma).shown);
    EXPECT_EQ(factory.made.at(kWindows).size(), 2u);
    EXPECT_TRUE(factory.latest(kWindows).shown);
    EXPECT_DOUBLE_EQ(factory.latest(kWindows).alpha, 0.425);
}

TEST_F(SwitchingShadeTest, HiddenShadeStaysHiddenAcrossTheChange) {
    SwitchingShade shade(maker(), true);
    shade.setUp({0, 0, 800, 600});
    shade.setAlpha(0.2);
    shade.orderOut();
    shade.useCompositor(false);
    EXPECT_FALSE(factory.latest(kGamma).shown);
    EXPECT_DOUBLE_EQ(factory.latest(kGamma).alpha, 0.2);
}

TEST_F(SwitchingShadeTest, SameWayAgainChangesNothing) {
    SwitchingShade shade(maker(), true);
    shade.orderFrontRegardless();
    shade.useCompositor(true);
    EXPECT_EQ(factory.made.at(kWindows).size(), 1u);
    EXPECT_TRUE(factory.latest(kWindows).shown);
}

TEST_F(SwitchingShadeTest, DisplayThatTheRampCannotDimIsUncoveredNotBlackAndCoveredAgainLater) {
    gammaPossible = false;
    SwitchingShade shade(maker(), true);
    shade.setUp({1920, 0, 1280, 1024});
    shade.setAlpha(0.5);
    shade.orderFrontRegardless();
    shade.useCompositor(false);
    EXPECT_FALSE(shade.canDim());
    EXPECT_FALSE(factory.latest(kWindows).shown);
    EXPECT_EQ(factory.made.count(kGamma), 0u);
    // Calls while it cannot dim are kept for when it can again.
    shade.setAlpha(0.3);
    shade.useCompositor(true);
    EXPECT_TRUE(shade.canDim());
    EXPECT_TRUE(factory.latest(kWindows).shown);
    EXPECT_DOUBLE_EQ(factory.latest(kWindows).alpha, 0.3);
}

TEST_F(SwitchingShadeTest, RaiseReachesTheShownPanelOnlyAndTheWayInUse) {
    SwitchingShade shade(maker(), false);
    shade.setAlpha(0.425);
    shade.raise();
    EXPECT_EQ(factory.latest(kGamma).raises, 0);
    shade.orderFrontRegardless();
    shade.raise();
    EXPECT_EQ(factory.latest(kGamma).raises, 1);
    shade.useCompositor(true);
    shade.raise();
    EXPECT_EQ(factory.latest(kWindows).raises, 1);
    shade.orderOut();
    shade.raise();
    EXPECT_EQ(factory.latest(kWindows).raises, 1);
}

}  // namespace
}  // namespace vantle
