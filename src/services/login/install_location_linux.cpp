#include "services/login/install_location_linux.h"

#include <filesystem>

namespace vantle {
namespace {

// "/usr/lib/../bin/x" reads as "/usr/bin/x", so a path that climbs out of a folder does not
// count as inside it.
std::string normalised(std::string_view path) {
    return std::filesystem::path(path).lexically_normal().string();
}

}  // namespace

std::vector<std::string> installFolders(std::string_view home) {
    std::vector<std::string> folders{"/usr/", "/opt/"};
    if (!home.empty() && home.front() == '/') {
        std::string base = normalised(home);
        while (!base.empty() && base.back() == '/') {
            base.pop_back();
        }
        // A home of "/" would make "/.local/" an installed place; that is no user's folder.
        if (!base.empty()) {
            folders.push_back(base + "/.local/");
        }
    }
    return folders;
}

bool installedForLogin(std::string_view executablePath, std::string_view home) {
    if (executablePath.empty() || executablePath.front() != '/') {
        return false;
    }
    const std::string path = normalised(executablePath);
    for (const std::string& folder : installFolders(home)) {
        if (path.starts_with(folder)) {
            return true;
        }
    }
    return false;
}

}  // namespace vantle
