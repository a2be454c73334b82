#include "ui/desktop_scheme_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

TEST(DesktopSchemeTest, GtkPreferDarkSettingWins) {
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-application-prefer-dark-theme=1\ngtk-theme-name=Adwaita\n"), true);
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-application-prefer-dark-theme = true\n"), true);
}

TEST(DesktopSchemeTest, GtkThemeNameDecidesWithoutThePreference) {
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-theme-name=Adwaita-dark\n"), true);
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-theme-name=Arc-Dark\r\n"), true);
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-theme-name=Adwaita\ngtk-application-prefer-dark-theme=0\n"),
              false);
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\ngtk-application-prefer-dark-theme=0\n"), false);
}

TEST(DesktopSchemeTest, GtkSettingsThatSayNothingLeaveItOpen) {
    EXPECT_EQ(gtkSettingsPreferDark(""), std::nullopt);
    EXPECT_EQ(gtkSettingsPreferDark("[Other]\ngtk-theme-name=Adwaita-dark\n"), std::nullopt);
    EXPECT_EQ(gtkSettingsPreferDark("[Settings]\n# gtk-theme-name=Adwaita-dark\ngtk-font-name=Cantarell 11\n"),
              std::nullopt);
    EXPECT_EQ(gtkSettingsPreferDark("\xff\xfe garbage = [ ]"), std::nullopt);
}

TEST(DesktopSchemeTest, GtkThemeVariableNamesTheVariant) {
    EXPECT_EQ(gtkThemeVariablePrefersDark("Adwaita:dark"), true);
    EXPECT_EQ(gtkThemeVariablePrefersDark("Adwaita"), false);
    EXPECT_EQ(gtkThemeVariablePrefersDark(""), std::nullopt);
}

TEST(DesktopSchemeTest, KdeWindowBackgroundDecidesBeforeTheSchemeName) {
    EXPECT_EQ(kdeGlobalsPreferDark("[Colors:Window]\nBackgroundNormal=32,35,38\n"), true);
    EXPECT_EQ(kdeGlobalsPreferDark("[General]\nColorScheme=BreezeDark\n[Colors:Window]\nBackgroundNormal=239,240,241\n"),
              false);
    EXPECT_EQ(kdeGlobalsPreferDark("[General]\nColorScheme=BreezeDark\n"), true);
    EXPECT_EQ(kdeGlobalsPreferDark("[General]\nColorScheme=BreezeLight\n"), false);
}

TEST(DesktopSchemeTest, KdeGlobalsThatSayNothingOrAreBrokenLeaveItOpen) {
    EXPECT_EQ(kdeGlobalsPreferDark(""), std::nullopt);
    EXPECT_EQ(kdeGlobalsPreferDark("[Colors:Window]\nBackgroundNormal=300,0,0\n"), std::nullopt);
    EXPECT_EQ(kdeGlobalsPreferDark("[Colors:Window]\nBackgroundNormal=a,b,c\n"), std::nullopt);
    EXPECT_EQ(kdeGlobalsPreferDark("[Colors:Window]\nBackgroundNormal=1,2\n"), std::nullopt);
}

}  // namespace
}  // namespace vantle
