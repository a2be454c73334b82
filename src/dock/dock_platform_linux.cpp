#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "dock/dock_platform.h"

namespace vantle {
namespace {

std::filesystem::path homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') {
        return home;
    }
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
        found->pw_dir != nullptr) {
        return found->pw_dir;
    }
    return "/";
}

}  // namespace

bool dockAvailable(const ProcessRunner& runner) {
    // The Dock belongs to macOS; here there is one only in the shape of stand-in tools.
    return runner.toolDirectory() != std::filesystem::path(kSystemToolDirectory);
}

std::filesystem::path dockToolDirectory() {
    if (const char* folder = std::getenv("VANTLE_DOCK_TOOLS"); folder != nullptr && folder[0] == '/') {
        return folder;
    }
    return std::filesystem::path(kSystemToolDirectory);
}

// The freedesktop place for a user's application data.
std::filesystem::path applicationSupportDirectory() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && data[0] == '/') {
        return data;
    }
    return homeDirectory() / ".local" / "share";
}

}  // namespace vantle
