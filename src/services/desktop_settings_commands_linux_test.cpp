#include "services/desktop_settings_commands_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

using Commands = std::vector<std::vector<std::string>>;

TEST(DesktopSettingsCommandsTest, DesktopsOwnSettingsComeFirstThenGenericTools) {
    EXPECT_EQ(settingsCommands("ubuntu:GNOME", SettingsPlace::Displays),
              (Commands{{"gnome-control-center", "display"}, {"arandr"}, {"lxrandr"}}));
    EXPECT_EQ(settingsCommands("XFCE", SettingsPlace::Sound), (Commands{{"pavucontrol"}, {"pavucontrol"}, {"pavucontrol-qt"}}));
    EXPECT_EQ(settingsCommands("KDE", SettingsPlace::Sound).front(),
              (std::vector<std::string>{"systemsettings", "kcm_pulseaudio"}));
    EXPECT_EQ(settingsCommands("", SettingsPlace::Sound), (Commands{{"pavucontrol"}, {"pavucontrol-qt"}}));
}

TEST(DesktopSettingsCommandsTest, KeyboardShortcutsOpenTheDesktopsOwnPageAndNothingElse) {
    EXPECT_EQ(settingsCommands("ubuntu:GNOME", SettingsPlace::Keyboard),
              (Commands{{"gnome-control-center", "keyboard"}}));
    EXPECT_EQ(settingsCommands("X-Cinnamon", SettingsPlace::Keyboard), (Commands{{"cinnamon-settings", "keyboard"}}));
    EXPECT_EQ(settingsCommands("KDE", SettingsPlace::Keyboard).front(),
              (std::vector<std::string>{"systemsettings", "kcm_keys"}));
    EXPECT_TRUE(settingsCommands("", SettingsPlace::Keyboard).empty());
}

TEST(DesktopSettingsCommandsTest, StartupApplicationsOfEachDesktop) {
    EXPECT_EQ(settingsCommands("XFCE", SettingsPlace::StartupApplications), (Commands{{"xfce4-session-settings"}}));
    EXPECT_EQ(settingsCommands("MATE", SettingsPlace::StartupApplications), (Commands{{"mate-session-properties"}}));
    EXPECT_TRUE(settingsCommands("unknown", SettingsPlace::StartupApplications).empty());
}

}  // namespace
}  // namespace vantle
