#include "services/workspace.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "services/workspace_linux.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

using Commands = std::vector<std::vector<std::string>>;

TEST(WorkspaceTest, DesktopsOwnSettingsComeFirstThenGenericTools) {
    EXPECT_EQ(settingsCommands("ubuntu:GNOME", SettingsPlace::Displays),
              (Commands{{"gnome-control-center", "display"}, {"arandr"}, {"lxrandr"}}));
    EXPECT_EQ(settingsCommands("XFCE", SettingsPlace::Sound), (Commands{{"pavucontrol"}, {"pavucontrol"}, {"pavucontrol-qt"}}));
    EXPECT_EQ(settingsCommands("KDE", SettingsPlace::Sound).front(),
              (std::vector<std::string>{"systemsettings", "kcm_pulseaudio"}));
    EXPECT_EQ(settingsCommands("", SettingsPlace::Sound), (Commands{{"pavucontrol"}, {"pavucontrol-qt"}}));
}

TEST(WorkspaceTest, KeyboardShortcutsOpenTheDesktopsOwnPageAndNothingElse) {
    EXPECT_EQ(settingsCommands("ubuntu:GNOME", SettingsPlace::Keyboard),
              (Commands{{"gnome-control-center", "keyboard"}}));
    EXPECT_EQ(settingsCommands("X-Cinnamon", SettingsPlace::Keyboard), (Commands{{"cinnamon-settings", "keyboard"}}));
    EXPECT_EQ(settingsCommands("KDE", SettingsPlace::Keyboard).front(),
              (std::vector<std::string>{"systemsettings", "kcm_keys"}));
    EXPECT_TRUE(settingsCommands("", SettingsPlace::Keyboard).empty());
}

TEST(WorkspaceTest, StartupApplicationsOfEachDesktop) {
    EXPECT_EQ(settingsCommands("XFCE", SettingsPlace::StartupApplications), (Commands{{"xfce4-session-settings"}}));
    EXPECT_EQ(settingsCommands("MATE", SettingsPlace::StartupApplications), (Commands{{"mate-session-properties"}}));
    EXPECT_TRUE(settingsCommands("unknown", SettingsPlace::StartupApplications).empty());
}

// The settings applications are stand-in scripts on a private PATH that note how they were run.
TEST(WorkspaceStandInToolsTest, StartsTheFirstToolThatIsInstalled) {
    testing::TemporaryDirectory bin;
    const std::filesystem::path record = bin.path() / "record.txt";
    testing::writeFile(bin.path() / "arandr", "#!/bin/sh\necho \"arandr $*\" > " + record.string() + "\n");
    std::filesystem::permissions(bin.path() / "arandr", std::filesystem::perms::owner_all);
    const std::string savedPath = std::getenv("PATH");
    ::setenv("PATH", (bin.path().string() + ":/usr/bin:/bin").c_str(), 1);
    const bool started = startFirstAvailable({{"no-such-settings-tool", "x"}, {"arandr", "--quiet"}});
    ::setenv("PATH", savedPath.c_str(), 1);
    ASSERT_TRUE(started);
    for (int attempt = 0; attempt < 200 && !std::filesystem::exists(record); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(testing::readFile(record), "arandr --quiet\n");
}

TEST(WorkspaceStandInToolsTest, NothingInstalledIsReported) {
    EXPECT_FALSE(startFirstAvailable({{"no-such-settings-tool"}, {}}));
}

}  // namespace
}  // namespace vantle
