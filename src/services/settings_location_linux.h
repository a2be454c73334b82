#pragma once

#include <filesystem>

namespace vantle {

// The folder of the program's own per-user settings: $XDG_CONFIG_HOME/vantle-control, or
// ~/.config/vantle-control when the variable is unset, empty or not an absolute path.
std::filesystem::path settingsDirectory();

// The settings file inside it.
std::filesystem::path settingsFilePath();

}  // namespace vantle
