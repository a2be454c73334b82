#include "services/login/login_settings_commands_linux.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

using Commands = std::vector<std::vector<std::string>>;

TEST(LoginSettingsCommandsTest, WithoutAKnownDesktopTheAutostartFolderIsOpened) {
    EXPECT_EQ(loginSettingsCommands("", "/home/ada/.config/autostart"),
              (Commands{{"xdg-open", "/home/ada/.config/autostart"}, {"gio", "open", "/home/ada/.config/autostart"}}));
}

TEST(LoginSettingsCommandsTest, TheDesktopsStartupPageComesBeforeTheFolder) {
    const Commands commands = loginSettingsCommands("XFCE", "/a");
    ASSERT_GE(commands.size(), 3u);
    EXPECT_EQ(commands.front(), std::vector<std::string>{"xfce4-session-settings"});
    EXPECT_EQ(commands[commands.size() - 2], (std::vector<std::string>{"xdg-open", "/a"}));
}

}  // namespace
}  // namespace vantle
