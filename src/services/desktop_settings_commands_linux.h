#pragma once

#include <string>
#include <vector>

#include "services/workspace.h"

namespace vantle {

// The commands that open a settings place, best first: those of the desktop named by
// XDG_CURRENT_DESKTOP (a colon-separated list, such as "ubuntu:GNOME"), then ones that work on
// any desktop.
std::vector<std::vector<std::string>> settingsCommands(const std::string& currentDesktop, SettingsPlace place);

}  // namespace vantle
