#include "services/login/login_settings_commands_linux.h"

#include "services/desktop_settings_commands_linux.h"

namespace vantle {

std::vector<std::vector<std::string>> loginSettingsCommands(const std::string& currentDesktop,
                                                            const std::string& autostartFolder) {
    std::vector<std::vector<std::string>> commands =
        settingsCommands(currentDesktop, SettingsPlace::StartupApplications);
    commands.push_back({"xdg-open", autostartFolder});
    commands.push_back({"gio", "open", autostartFolder});
    return commands;
}

}  // namespace vantle
