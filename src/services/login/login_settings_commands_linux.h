#pragma once

#include <string>
#include <vector>

namespace vantle {

// The commands that open the desktop's settings for programs started at login, best first: the
// startup-applications page of each desktop named by XDG_CURRENT_DESKTOP, then, where a desktop
// has none, the autostart folder itself in the file manager.
std::vector<std::vector<std::string>> loginSettingsCommands(const std::string& currentDesktop,
                                                            const std::string& autostartFolder);

}  // namespace vantle
