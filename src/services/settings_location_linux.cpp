#include "services/settings_location_linux.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace vantle {
namespace {

std::filesystem::path homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') {
        return home;
    }
    if (const passwd* entry = ::getpwuid(::getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    return "/";
}

// The base folder for configuration; a relative value is invalid and ignored.
std::filesystem::path configHome() {
    if (const char* configured = std::getenv("XDG_CONFIG_HOME"); configured != nullptr && configured[0] == '/') {
        return configured;
    }
    return homeDirectory() / ".config";
}

}  // namespace

std::filesystem::path settingsDirectory() {
    return configHome() / "vantle-control";
}

std::filesystem::path settingsFilePath() {
    return settingsDirectory() / "defaults.plist";
}

}  // namespace vantle
