#include "keys/osd_check.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

OsdPanelFacts goodPanel() {
    OsdPanelFacts panel;
    panel.frame = {855, 805, 210, 190};
    panel.inputTransparent = true;
    panel.focusable = false;
    panel.opaque = false;
    panel.backgroundAlpha = 0;
    panel.shadow = false;
    panel.hasMask = true;
    panel.maskCornerAlpha = 0;
    panel.maskCentreAlpha = 1.0;
    panel.shownCornerUncovered = true;
    panel.shownCentreCovered = true;
    return panel;
}

const std::vector<ScreenFrame> kScreens{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};

TEST(OsdCheckTest, WellMadePanelPasses) {
    EXPECT_FALSE(osdPanelFailure(goodPanel(), kScreens).has_value());
}

TEST(OsdCheckTest, GeometryAndFocusFailures) {
    for (auto spoil : std::vector<void (*)(OsdPanelFacts&)>{
             [](OsdPanelFacts& panel) { panel.inputTransparent = false; },
             [](OsdPanelFacts& panel) { panel.focusable = true; },
             [](OsdPanelFacts& panel) { panel.frame.width = 211; },
             [](OsdPanelFacts& panel) { panel.frame.x = 1800; },  // across two screens
             [](OsdPanelFacts& panel) { panel.frame.x = 857; },   // off centre by 2
         }) {
        OsdPanelFacts panel = goodPanel();
        spoil(panel);
        EXPECT_EQ(osdPanelFailure(panel, kScreens), "FAIL: OSD geometry or focus");
    }
}

TEST(OsdCheckTest, TransparencyAndMaskFailures) {
    for (auto spoil : std::vector<void (*)(OsdPanelFacts&)>{
             [](OsdPanelFacts& panel) { panel.opaque = true; },
             [](OsdPanelFacts& panel) { panel.backgroundAlpha = 1; },
             [](OsdPanelFacts& panel) { panel.shadow = true; },
             [](OsdPanelFacts& panel) { panel.hasMask = false; },
             [](OsdPanelFacts& panel) { panel.maskCornerAlpha = 3; },
             [](OsdPanelFacts& panel) { panel.maskCentreAlpha = 0.98; },
             [](OsdPanelFacts& panel) { panel.shownCornerUncovered = false; },  // a square window
             [](OsdPanelFacts& panel) { panel.shownCentreCovered = false; },    // nothing drawn
         }) {
        OsdPanelFacts panel = goodPanel();
        spoil(panel);
        EXPECT_EQ(osdPanelFailure(panel, kScreens), "FAIL: OSD transparency or backdrop mask");
    }
}

TEST(OsdCheckTest, PanelOnTheSecondScreenIsCentredOnThatScreen) {
    OsdPanelFacts panel = goodPanel();
    panel.frame = {1920 + 640 - 105, 749, 210, 190};
    EXPECT_FALSE(osdPanelFailure(panel, kScreens).has_value());
}

}  // namespace
}  // namespace vantle
