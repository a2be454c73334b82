#include "services/login/applications_folder.h"

#include <string>

namespace vantle {
namespace {

constexpr std::string_view kApplicationsFolder = "/Applications/";

}  // namespace

bool inApplicationsFolder(std::string_view bundlePath, std::string_view home) {
    if (bundlePath.starts_with(kApplicationsFolder)) {
        return true;
    }
    if (home.empty() || home.front() != '/') {
        return false;
    }
    // A home given with a trailing slash names the same folder.
    while (home.size() > 1 && home.back() == '/') {
        home.remove_suffix(1);
    }
    const std::string userApplications =
        (home == "/" ? std::string() : std::string(home)) + std::string(kApplicationsFolder);
    return bundlePath.starts_with(userApplications);
}

}  // namespace vantle
