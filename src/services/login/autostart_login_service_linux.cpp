#include "services/login/autostart_login_service_linux.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <system_error>

#include "services/file_contents.h"
#include "services/login/desktop_entry_linux.h"
#include "services/login/install_location_linux.h"
#include "services/login/login_settings_commands_linux.h"
#include "services/workspace_linux.h"
#include "services/write_all_linux.h"

namespace vantle {
namespace {

LoginFailure failureOf(int error) {
    return LoginFailure{std::generic_category().message(error)};
}

std::filesystem::path homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') {
        return home;
    }
    if (const passwd* entry = ::getpwuid(::getuid()); entry != nullptr && entry->pw_dir != nullptr) {
        return entry->pw_dir;
    }
    return {};
}

// Writes a temporary file beside path, makes it durable and renames it over path, so that the
// session never reads half an entry, whatever happens to us meanwhile.
std::optional<LoginFailure> writeAtomically(const std::filesystem::path& path, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    if (error) {
        return LoginFailure{error.message()};
    }
    std::string temporary = (path.parent_path() / ("." + path.filename().string() + ".XXXXXX")).string();
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        return failureOf(errno);
    }
    const bool written = ::fchmod(fd, 0644) == 0 && writeAll(fd, text) && ::fsync(fd) == 0;
    const int writeError = errno;
    if (::close(fd) != 0 || !written) {
        const int failure = written ? errno : writeError;
        ::unlink(temporary.c_str());
        return failureOf(failure);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        const int failure = errno;
        ::unlink(temporary.c_str());
        return failureOf(failure);
    }
    // Makes the rename itself survive a power cut.
    if (const int folder = ::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return std::nullopt;
}

}  // namespace

AutostartFolders autostartFoldersFromEnvironment() {
    AutostartFolders folders;
    const char* configHome = std::getenv("XDG_CONFIG_HOME");
    if (configHome != nullptr && configHome[0] == '/') {
        folders.user = std::filesystem::path(configHome) / "autostart";
    } else {
        folders.user = homeDirectory() / ".config" / "autostart";
    }
    const char* configDirs = std::getenv("XDG_CONFIG_DIRS");
    std::istringstream list(configDirs != nullptr && configDirs[0] != '\0' ? configDirs : "/etc/xdg");
    for (std::string folder; std::getline(list, folder, ':');) {
        if (!folder.empty() && folder[0] == '/') {
            folders.system.push_back(std::filesystem::path(folder) / "autostart");
        }
    }
    return folders;
}

std::filesystem::path AutostartLoginService::entryPath() const {
    return folders_.user / kAutostartEntryName;
}

std::optional<std::string> AutostartLoginService::systemEntry() const {
    for (const std::filesystem::path& folder : folders_.system) {
        if (std::optional<std::string> text = readFileContents(folder / kAutostartEntryName)) {
            return text;
        }
    }
    return std::nullopt;
}

LoginItemStatus AutostartLoginService::status() {
    const std::filesystem::path path = entryPath();
    if (const std::optional<std::string> text = readFileContents(path)) {
        return entryStartsAtLogin(*text) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
    }
    // An entry of ours that cannot be read still hides the system's, and the session cannot
    // read it either.
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(path, error))) {
        return LoginItemStatus::notRegistered;
    }
    const std::optional<std::string> system = systemEntry();
    return system && entryStartsAtLogin(*system) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

std::optional<LoginFailure> AutostartLoginService::registerApp() {
    return writeAtomically(entryPath(), autostartEntryText(executablePath_));
}

std::optional<LoginFailure> AutostartLoginService::unregisterApp() {
    if (const std::optional<std::string> system = systemEntry(); system && entryStartsAtLogin(*system)) {
        return writeAtomically(entryPath(), hiddenAutostartEntryText(executablePath_));
    }
    std::error_code error;
    std::filesystem::remove(entryPath(), error);
    if (error) {
        return LoginFailure{error.message()};
    }
    return std::nullopt;
}

bool AutostartLoginService::openSettings() {
    std::error_code error;
    std::filesystem::create_directories(folders_.user, error);
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return startFirstAvailable(loginSettingsCommands(desktop != nullptr ? desktop : "", folders_.user.string()));
}

std::string runningExecutablePath() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

bool runningInstalledForLogin() {
    return installedForLogin(runningExecutablePath(), homeDirectory().string());
}

}  // namespace vantle
