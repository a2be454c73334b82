#include "display/work_area.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(WorkAreaTest, EachDesktopHasFourNumbers) {
    const std::vector<std::uint32_t> numbers = {0, 0, 1920, 1040, 0, 32, 1920, 1048};
    EXPECT_EQ(workAreaOf(numbers, 0), (ScreenFrame{0, 0, 1920, 1040}));
    EXPECT_EQ(workAreaOf(numbers, 1), (ScreenFrame{0, 32, 1920, 1048}));
}

TEST(WorkAreaTest, MissingDesktopEmptyAreaOrNumbersOutOfRangeSayNothing) {
    EXPECT_EQ(workAreaOf({0, 0, 1920, 1040}, 1), std::nullopt);
    EXPECT_EQ(workAreaOf({0, 0, 1920}, 0), std::nullopt);
    EXPECT_EQ(workAreaOf({}, 0), std::nullopt);
    EXPECT_EQ(workAreaOf({0, 0, 0, 1040}, 0), std::nullopt);
    EXPECT_EQ(workAreaOf({0, 0, 0x80000000u, 1040}, 0), std::nullopt);
}

TEST(WorkAreaTest, BottomPanelAlongTheDesktopsEdgeTakesItsStripFromTheScreenBelowIt) {
    const ScreenFrame left{0, 0, 1920, 1080};
    const ScreenFrame right{1920, 0, 1280, 1024};
    const ScreenFrame area{0, 0, 3200, 1040};
    EXPECT_EQ(visiblePart(left, area), (ScreenFrame{0, 0, 1920, 1040}));
    // The work area reaches below the right screen's bottom: all of it is free.
    EXPECT_EQ(visiblePart(right, area), (ScreenFrame{1920, 0, 1280, 1024}));
}

TEST(WorkAreaTest, NoWorkAreaOrNoneOnThisScreenLeavesTheWholeFrame) {
    const ScreenFrame frame{1920, 0, 1280, 1024};
    EXPECT_EQ(visiblePart(frame, std::nullopt), std::nullopt);
    EXPECT_EQ(visiblePart(frame, ScreenFrame{0, 0, 1920, 1080}), std::nullopt);
}

TEST(WorkAreaTest, FramesAtTheEndOfTheCoordinateRangeDoNotWrap) {
    const ScreenFrame frame{2147483000, 0, 600, 100};
    EXPECT_EQ(visiblePart(frame, ScreenFrame{2147483000, 10, 647, 50}), (ScreenFrame{2147483000, 10, 600, 50}));
}

}  // namespace
}  // namespace vantle
