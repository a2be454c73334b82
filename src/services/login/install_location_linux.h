#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantle {

// Whether the program at executablePath may start at login: only a program installed for good
// may, never one in a build tree or a download folder, whose path is gone tomorrow. Installed
// means under /usr/ or /opt/ (by the package manager or an add-on package) or under the user's
// own ~/.local/. The tests are plain text prefix tests on the lexically normalised path, so any
// subfolder counts; a relative path is never installed. An empty or relative home has no
// ~/.local/.
bool installedForLogin(std::string_view executablePath, std::string_view home);

// The folders installedForLogin accepts, each ending in "/".
std::vector<std::string> installFolders(std::string_view home);

}  // namespace vantle
