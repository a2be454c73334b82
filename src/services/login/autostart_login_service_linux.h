#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "services/login/login_service.h"

namespace vantle {

// The autostart folders a desktop session reads at login, in order of precedence.
struct AutostartFolders {
    std::filesystem::path user;                 // $XDG_CONFIG_HOME/autostart
    std::vector<std::filesystem::path> system;  // autostart in each of $XDG_CONFIG_DIRS
};

// The folders named by XDG_CONFIG_HOME (else ~/.config) and XDG_CONFIG_DIRS (else /etc/xdg);
// relative entries are invalid and skipped.
AutostartFolders autostartFoldersFromEnvironment();

// Launch at login through an XDG autostart entry, vantle-control.desktop, that the desktop
// session reads at login. The user's own entry decides; without one, the first one in the
// system's folders does. Registering writes the user's entry (atomically: a crash leaves the
// old entry or the new one, never half of one); unregistering removes it, or, when a system
// entry would start the program anyway, replaces it with a hidden entry that overrides that one.
class AutostartLoginService final : public LoginService {
public:
    AutostartLoginService(AutostartFolders folders, std::string executablePath)
        : folders_(std::move(folders)), executablePath_(std::move(executablePath)) {}

    // The user's entry.
    std::filesystem::path entryPath() const;

    LoginItemStatus status() override;
    std::optional<LoginFailure> registerApp() override;
    std::optional<LoginFailure> unregisterApp() override;
    // The desktop's startup-applications settings, else the autostart folder (created first, so
    // that there is something to open).
    bool openSettings() override;

private:
    // The first system entry in order of precedence, when one can be read.
    std::optional<std::string> systemEntry() const;

    AutostartFolders folders_;
    std::string executablePath_;
};

// The path of the running program.
std::string runningExecutablePath();
// Whether the running program lies where it may start at login (see install_location_linux.h).
bool runningInstalledForLogin();

}  // namespace vantle
