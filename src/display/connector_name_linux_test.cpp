#include "display/connector_name_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(ConnectorNameTest, CardPrefixIsStrippedFromDrmConnectorNames) {
    EXPECT_EQ(withoutCardPrefix("card0-DP-1"), "DP-1");
    EXPECT_EQ(withoutCardPrefix("card12-HDMI-A-2"), "HDMI-A-2");
    EXPECT_EQ(withoutCardPrefix("card0-eDP-1"), "eDP-1");
    EXPECT_EQ(withoutCardPrefix("DP-1"), "DP-1");
    EXPECT_EQ(withoutCardPrefix("cardinal-1"), "cardinal-1");
    EXPECT_EQ(withoutCardPrefix("card-1"), "card-1");
    EXPECT_EQ(withoutCardPrefix("cardX-eDP-1"), "cardX-eDP-1");
    EXPECT_EQ(withoutCardPrefix("card0"), "card0");
    EXPECT_EQ(withoutCardPrefix(""), "");
}

}  // namespace
}  // namespace vantle
