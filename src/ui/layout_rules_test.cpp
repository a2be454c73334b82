#include "ui/layout_rules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantle::LayoutRules {
namespace {

TEST(LayoutRulesTest, WideBottomButtonsWidenThePopover) {
    EXPECT_EQ(popoverWidth(200), 448);
}

TEST(LayoutRulesTest, NarrowBottomButtonsKeepThePopoverAt420) {
    EXPECT_EQ(popoverWidth(150), 420);
    EXPECT_EQ(popoverWidth(186), 420);
    EXPECT_EQ(popoverWidth(187), 422);
}

TEST(LayoutRulesTest, PopoverIsAtMostItsScreenLess80) {
    EXPECT_EQ(popoverMaximumHeight(1050), 970);
}

TEST(LayoutRulesTest, SmallScreenStillAllows300) {
    EXPECT_EQ(popoverMaximumHeight(350), 300);
}

TEST(LayoutRulesTest, UnknownScreenAllows720) {
    EXPECT_EQ(popoverMaximumHeight(std::nullopt), 720);
}

TEST(LayoutRulesTest, DocumentHeightRoundsUpAndAddsTheMargins) {
    EXPECT_EQ(popoverDocumentHeight(300.2), 337);
    EXPECT_EQ(popoverDocumentHeight(300), 336);
}

TEST(LayoutRulesTest, ShortContentSetsThePopoverHeight) {
    EXPECT_EQ(popoverSize(150, 300.2, 1050), (PopoverSize{420, 337, 337}));
}

TEST(LayoutRulesTest, LongListOfDisplaysScrolls) {
    EXPECT_EQ(popoverSize(200, 900, 350), (PopoverSize{448, 936, 300}));
    EXPECT_EQ(popoverSize(150, 900, std::nullopt), (PopoverSize{420, 936, 720}));
}

// A window with a title bar of 28 on a screen whose visible area runs from 25 to 1080.
SettingsWindowGeometry window(double fitting, double content = 730, double top = 100) {
    return SettingsWindowGeometry{fitting, content, top, content + 28, VerticalSpan{25, 1055}};
}

TEST(LayoutRulesTest, SettingsLimitIsTheVisibleHeightLessChromeAnd40) {
    EXPECT_EQ(settingsContentLimit(1055, 28), 987);
}

TEST(LayoutRulesTest, SettingsLimitIsAtLeast240) {
    EXPECT_EQ(settingsContentLimit(250, 28), 240);
}

TEST(LayoutRulesTest, SettingsLimitWithoutAScreenStartsFrom900) {
    EXPECT_EQ(settingsContentLimit(std::nullopt, 28), 832);
    EXPECT_EQ(settingsContentLimit(std::nullopt, 700), 240);
}

TEST(LayoutRulesTest, WindowFollowsItsContentKeepingItsTop) {
    EXPECT_EQ(fitSettingsWindow(window(512.3)), (SettingsWindowFit{680, 513, 100}));
}

TEST(LayoutRulesTest, TallContentIsCappedByTheScreen) {
    EXPECT_EQ(fitSettingsWindow(window(1400)), (SettingsWindowFit{680, 987, 100}));
}

TEST(LayoutRulesTest, DifferenceOfPoint4LeavesTheWindowAsItIs) {
    EXPECT_EQ(fitSettingsWindow(window(729.6)), std::nullopt);
    EXPECT_EQ(fitSettingsWindow(window(600, 600.4)), std::nullopt);
    EXPECT_EQ(fitSettingsWindow(window(600, 599.6)), std::nullopt);
    EXPECT_EQ(fitSettingsWindow(window(600, 600.5)), std::nullopt);
}

TEST(LayoutRulesTest, DifferenceOfMoreThanHalfAPointRefits) {
    EXPECT_EQ(fitSettingsWindow(window(600, 600.6)), (SettingsWindowFit{680, 600, 100}));
}

TEST(LayoutRulesTest, HeightThatIsNotAFinitePositiveNumberChangesNothing) {
    EXPECT_EQ(fitSettingsWindow(window(0)), std::nullopt);
    EXPECT_EQ(fitSettingsWindow(window(-20)), std::nullopt);
    EXPECT_EQ(fitSettingsWindow(window(std::numeric_limits<double>::quiet_NaN())), std::nullopt);
}

TEST(LayoutRulesTest, InfiniteFittingHeightTakesTheLimit) {
    EXPECT_EQ(fitSettingsWindow(window(std::numeric_limits<double>::infinity())),
              (SettingsWindowFit{680, 987, 100}));
}

TEST(LayoutRulesTest, WithoutAScreenTheLimitComesFrom900AndThePositionIsNotClamped) {
    SettingsWindowGeometry geometry = window(1400, 730, -500);
    geometry.visible.reset();
    EXPECT_EQ(fitSettingsWindow(geometry), (SettingsWindowFit{680, 832, -500}));
}

TEST(LayoutRulesTest, TopAboveTheVisibleAreaIsBroughtDown) {
    EXPECT_EQ(fitSettingsWindow(window(500, 730, 0)), (SettingsWindowFit{680, 500, 25}));
}

TEST(LayoutRulesTest, TopBelowTheVisibleAreaIsBroughtUp) {
    EXPECT_EQ(fitSettingsWindow(window(500, 730, 1500)), (SettingsWindowFit{680, 500, 1080}));
}

TEST(LayoutRulesTest, SmallScreenKeepsAtLeast240) {
    SettingsWindowGeometry geometry = window(600);
    geometry.visible = VerticalSpan{0, 200};
    EXPECT_EQ(fitSettingsWindow(geometry), (SettingsWindowFit{680, 240, 100}));
}

}  // namespace
}  // namespace vantle::LayoutRules
