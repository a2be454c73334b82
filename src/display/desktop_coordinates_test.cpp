#include "display/desktop_coordinates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantle {
namespace {

TEST(DesktopCoordinatesTest, WholePointRectangleKeepsItsNumbers) {
    EXPECT_EQ(roundedFrame(-1280, 0, 1280, 1024), (ScreenFrame{-1280, 0, 1280, 1024}));
}

TEST(DesktopCoordinatesTest, NeighbouringScreensStillTouchAfterRounding) {
    const std::optional<ScreenFrame> left = roundedFrame(0, 0, 1511.6, 982);
    const std::optional<ScreenFrame> right = roundedFrame(1511.6, 0, 1920, 1080);
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->x + left->width, right->x);
}

TEST(DesktopCoordinatesTest, NumbersThatAreNotFiniteGiveNoFrame) {
    EXPECT_FALSE(roundedFrame(std::nan(""), 0, 100, 100));
    EXPECT_FALSE(roundedFrame(0, 0, std::numeric_limits<double>::infinity(), 100));
}

TEST(DesktopCoordinatesTest, EdgesBeyondTheIntRangeGiveNoFrame) {
    EXPECT_FALSE(roundedFrame(0, 0, 1e12, 100));
    EXPECT_FALSE(roundedFrame(-2e9, 0, 4e9, 100));
}

TEST(DesktopCoordinatesTest, NegativeSizeGivesNoFrame) {
    EXPECT_FALSE(roundedFrame(0, 0, -10, 100));
}

TEST(DesktopCoordinatesTest, FirstScreenFlipsOntoItself) {
    const ScreenFrame first{0, 0, 1512, 982};
    EXPECT_EQ(flippedVertically(first, 982), first);
}

TEST(DesktopCoordinatesTest, ScreenAboveTheFirstGetsAnOriginAboveItsTop) {
    // A 1080-point screen placed on top of a 982-point main screen, left edges aligned.
    EXPECT_EQ(flippedVertically(ScreenFrame{0, -1080, 1920, 1080}, 982), (ScreenFrame{0, 982, 1920, 1080}));
}

TEST(DesktopCoordinatesTest, MenuBarStripFlipsToTheTopOfAppKitsFrame) {
    // The visible part below a 37-point menu bar, as AppKit gives it, back in desktop terms.
    EXPECT_EQ(flippedVertically(ScreenFrame{0, 0, 1512, 945}, 982), (ScreenFrame{0, 37, 1512, 945}));
}

TEST(DesktopCoordinatesTest, FlippingTwiceGivesTheFrameBack) {
    const ScreenFrame frame{1512, 200, 2560, 1440};
    EXPECT_EQ(flippedVertically(flippedVertically(frame, 982), 982), frame);
}

}  // namespace
}  // namespace vantle
