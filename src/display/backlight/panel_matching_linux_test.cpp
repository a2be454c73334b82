#include "display/backlight/panel_matching_linux.h"

#include <gtest/gtest.h>

namespace vantle::backlight {
namespace {

TEST(PanelMatchingTest, BuiltInConnectorKindsRecognised) {
    EXPECT_TRUE(isInternalConnectorName("card0-eDP-1"));
    EXPECT_TRUE(isInternalConnectorName("card12-LVDS-1"));
    EXPECT_TRUE(isInternalConnectorName("card1-DSI-2"));
    EXPECT_FALSE(isInternalConnectorName("card0-DP-1"));
    EXPECT_FALSE(isInternalConnectorName("card0-HDMI-A-1"));
    EXPECT_FALSE(isInternalConnectorName("eDP-1"));
    EXPECT_FALSE(isInternalConnectorName("card0"));
    EXPECT_FALSE(isInternalConnectorName("renderD128"));
}

TEST(PanelMatchingTest, ShortEdidsMatchNothing) {
    const std::vector<std::uint8_t> shortEdid(64, 7);
    const std::vector<PanelConnector> panels{{"card0-eDP-1", "eDP-1", shortEdid, {}}};
    EXPECT_EQ(panelShowing({1, shortEdid, "eDP-1"}, panels), std::nullopt);
}

TEST(PanelMatchingTest, NoBacklightForAPanelWhenThereIsNone) {
    EXPECT_EQ(backlightFor({"card0-eDP-1", "eDP-1", {}, {}}, {}), std::nullopt);
}

}  // namespace
}  // namespace vantle::backlight
