#include "services/workspace_linux.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "services/desktop_settings_commands_linux.h"

extern char** environ;

namespace vantle {
namespace {

bool onPath(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::filesystem::path candidate = std::filesystem::path(folder.empty() ? "." : folder) / program;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

// Through "setsid --fork", which starts the application in a session of its own and exits at
// once: the application neither shares our terminal nor ends with us, and it is not our child,
// so nothing of ours has to wait for it.
bool startDetached(const std::vector<std::string>& command) {
    std::vector<std::string> arguments{"setsid", "--fork"};
    arguments.insert(arguments.end(), command.begin(), command.end());
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    pid_t pid = -1;
    const int error = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return false;
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

bool startFirstAvailable(const std::vector<std::vector<std::string>>& commands) {
    for (const std::vector<std::string>& command : commands) {
        if (!command.empty() && onPath(command.front()) && startDetached(command)) {
            return true;
        }
    }
    return false;
}

bool DesktopWorkspace::openSettings(SettingsPlace place) {
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return startFirstAvailable(settingsCommands(desktop != nullptr ? desktop : "", place));
}

// The desktop's own choice of browser and mail program, through the freedesktop opener.
bool DesktopWorkspace::openUrl(const std::string& url) {
    return startFirstAvailable({{"xdg-open", url}, {"gio", "open", url}});
}

}  // namespace vantle
