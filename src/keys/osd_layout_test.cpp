#include "keys/osd_layout.h"

#include <gtest/gtest.h>

#include "localization/localization.h"

namespace vantle {
namespace {

std::array<bool, kOsdSegments> litBelow(int count) {
    std::array<bool, kOsdSegments> lit{};
    for (int segment = 0; segment < count; ++segment) {
        lit[static_cast<std::size_t>(segment)] = true;
    }
    return lit;
}

TEST(OsdLayoutTest, PanelIsCentredAndStandsAboveTheBottom) {
    const ScreenFrame screen{0, 0, 1920, 1080};
    EXPECT_EQ(osdPanelFrame(screen, screen), (ScreenFrame{855, 1080 - 85 - 190, 210, 190}));
    // Centred on the whole screen, not on the visible area.
    EXPECT_EQ(osdPanelFrame({1920, 0, 1280, 1024}, {2000, 0, 1200, 1024}).x, 1920 + 640 - 105);
}

TEST(OsdLayoutTest, TallDockAtTheBottomLiftsThePanel) {
    const ScreenFrame screen{0, 0, 1920, 1080};
    const ScreenFrame visible{0, 0, 1920, 1080 - 70};
    // 24 above the visible area's bottom, which is 94 above the screen's bottom.
    EXPECT_EQ(osdPanelFrame(screen, visible).y + 190, 1080 - 94);
}

TEST(OsdLayoutTest, HalfVolume) {
    const OsdContent content = osdContent(0.5f, false, 0);
    EXPECT_EQ(content.symbol, OsdSymbol::Speaker);
    EXPECT_EQ(content.text, L("s122") + " \u00B7 50 %");
    EXPECT_EQ(content.description, L("s122"));
    EXPECT_EQ(content.lit, litBelow(8));
}

TEST(OsdLayoutTest, ZeroVolumeShowsTheSlashedSpeakerAndNoSegment) {
    const OsdContent content = osdContent(0.0f, false, 0);
    EXPECT_EQ(content.symbol, OsdSymbol::SpeakerMuted);
    EXPECT_EQ(content.text, L("s122") + " \u00B7 0 %");
    EXPECT_EQ(content.lit, litBelow(0));
}

TEST(OsdLayoutTest, MutedShowsTheMutedTextAlone) {
    const OsdContent content = osdContent(0.8f, true, 0);
    EXPECT_EQ(content.symbol, OsdSymbol::SpeakerMuted);
    EXPECT_EQ(content.text, L("s123"));
    EXPECT_EQ(content.lit, litBelow(0));
}

TEST(OsdLayoutTest, HalfAPercentRoundsAwayFromZeroAndLightsTheFirstSegment) {
    const OsdContent content = osdContent(0.005f, false, 0);
    EXPECT_EQ(content.text, L("s122") + " \u00B7 1 %");
    EXPECT_EQ(content.lit, litBelow(1));
    EXPECT_EQ(osdContent(1.0f / 16.0f, false, 0).lit, litBelow(1));
}

TEST(OsdLayoutTest, BrightnessShowsItsOwnLevel) {
    OsdContent content = osdContent(std::nullopt, false, 0.25f);
    EXPECT_EQ(content.symbol, OsdSymbol::Brightness);
    EXPECT_EQ(content.text, L("s000") + " \u00B7 25 %");
    EXPECT_EQ(content.lit, litBelow(4));
    EXPECT_EQ(osdContent(std::nullopt, false, 1.0f).lit, litBelow(16));
    // Muted leaves the brightness text but lights nothing.
    content = osdContent(std::nullopt, true, 0.25f);
    EXPECT_EQ(content.text, L("s000") + " \u00B7 25 %");
    EXPECT_EQ(content.lit, litBelow(0));
}

TEST(OsdLayoutTest, LevelsOutsideTheRangeAreShownAsTheyAre) {
    EXPECT_EQ(osdContent(1.5f, false, 0).text, L("s122") + " \u00B7 150 %");
}

}  // namespace
}  // namespace vantle
