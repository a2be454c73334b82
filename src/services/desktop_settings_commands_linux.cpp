#include "services/desktop_settings_commands_linux.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace vantle {
namespace {

using Command = std::vector<std::string>;

std::vector<std::string> desktopNames(const std::string& currentDesktop) {
    std::vector<std::string> names;
    std::istringstream list(currentDesktop);
    for (std::string name; std::getline(list, name, ':');) {
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        names.push_back(name);
    }
    return names;
}

// One desktop's settings programs, for each place in the order of SettingsPlace.
struct DesktopSettings {
    const char* desktop;
    std::vector<std::vector<Command>> places;
};

const std::vector<DesktopSettings>& desktopSettings() {
    static const std::vector<DesktopSettings> table = {
        {"gnome", {{{"gnome-control-center", "display"}}, {{"gnome-control-center", "sound"}},
                   {{"gnome-control-center", "keyboard"}}, {{"gnome-session-properties"}}}},
        {"kde", {{{"systemsettings", "kcm_kscreen"}, {"kcmshell6", "kcm_kscreen"}, {"kcmshell5", "kcm_kscreen"}},
                 {{"systemsettings", "kcm_pulseaudio"}, {"kcmshell6", "kcm_pulseaudio"}, {"kcmshell5", "kcm_pulseaudio"}},
                 {{"systemsettings", "kcm_keys"}, {"kcmshell6", "kcm_keys"}, {"kcmshell5", "kcm_keys"}},
                 {{"systemsettings", "kcm_autostart"}, {"kcmshell6", "kcm_autostart"}, {"kcmshell5", "kcm_autostart"}}}},
        {"xfce", {{{"xfce4-display-settings"}}, {{"pavucontrol"}}, {{"xfce4-keyboard-settings"}},
                  {{"xfce4-session-settings"}}}},
        {"cinnamon", {{{"cinnamon-settings", "display"}}, {{"cinnamon-settings", "sound"}},
                      {{"cinnamon-settings", "keyboard"}}, {{"cinnamon-settings", "startup"}}}},
        {"mate", {{{"mate-display-properties"}}, {{"mate-volume-control"}}, {{"mate-keybinding-properties"}},
                  {{"mate-session-properties"}}}},
        {"lxqt", {{{"lxqt-config-monitor"}}, {{"pavucontrol-qt"}}, {{"lxqt-config-globalkeyshortcuts"}},
                  {{"lxqt-config-session"}}}},
    };
    return table;
}

// Desktops that share another's settings programs.
std::string settingsDesktopOf(const std::string& desktop) {
    if (desktop == "unity" || desktop == "budgie") {
        return "gnome";
    }
    if (desktop == "x-cinnamon") {
        return "cinnamon";
    }
    return desktop;
}

std::vector<Command> commandsOf(const std::string& desktop, SettingsPlace place) {
    const std::string name = settingsDesktopOf(desktop);
    for (const DesktopSettings& settings : desktopSettings()) {
        if (name == settings.desktop) {
            return settings.places[static_cast<std::size_t>(place)];
        }
    }
    return {};
}

}  // namespace

std::vector<std::vector<std::string>> settingsCommands(const std::string& currentDesktop, SettingsPlace place) {
    std::vector<Command> commands;
    for (const std::string& desktop : desktopNames(currentDesktop)) {
        for (Command& command : commandsOf(desktop, place)) {
            commands.push_back(std::move(command));
        }
    }
    // Tools that work on any X11 desktop.
    switch (place) {
    case SettingsPlace::Displays:
        commands.push_back({"arandr"});
        commands.push_back({"lxrandr"});
        break;
    case SettingsPlace::Sound:
        commands.push_back({"pavucontrol"});
        commands.push_back({"pavucontrol-qt"});
        break;
    case SettingsPlace::Keyboard:
    case SettingsPlace::StartupApplications:
        // No desktop-independent program exists for these.
        break;
    }
    return commands;
}

}  // namespace vantle
