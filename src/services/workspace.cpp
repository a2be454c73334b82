#include "services/workspace.h"

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

std::vector<Command> commandsOf(const std::string& desktop, SettingsPlace place) {
    const bool displays = place == SettingsPlace::Displays;
    if (desktop == "gnome" || desktop == "unity" || desktop == "budgie") {
        return {{"gnome-control-center", displays ? "display" : "sound"}};
    }
    if (desktop == "kde") {
        return displays ? std::vector<Command>{{"systemsettings", "kcm_kscreen"}, {"kcmshell6", "kcm_kscreen"},
                                               {"kcmshell5", "kcm_kscreen"}}
                        : std::vector<Command>{{"systemsettings", "kcm_pulseaudio"}, {"kcmshell6", "kcm_pulseaudio"},
                                               {"kcmshell5", "kcm_pulseaudio"}};
    }
    if (desktop == "xfce") {
        return {{displays ? "xfce4-display-settings" : "pavucontrol"}};
    }
    if (desktop == "x-cinnamon" || desktop == "cinnamon") {
        return {{"cinnamon-settings", displays ? "display" : "sound"}};
    }
    if (desktop == "mate") {
        return {{displays ? "mate-display-properties" : "mate-volume-control"}};
    }
    if (desktop == "lxqt") {
        return {{displays ? "lxqt-config-monitor" : "pavucontrol-qt"}};
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
    if (place == SettingsPlace::Displays) {
        commands.push_back({"arandr"});
        commands.push_back({"lxrandr"});
    } else {
        commands.push_back({"pavucontrol"});
        commands.push_back({"pavucontrol-qt"});
    }
    return commands;
}

}  // namespace vantle
