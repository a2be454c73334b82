#pragma once

#include <string_view>

namespace vantle {

// Whether an application bundle at this path may start at login on macOS: only one that lies in
// /Applications or in the user's own Applications folder (or any folder below either), never
// one run from a disk image or a download folder, whose path is gone tomorrow. bundlePath is
// the bundle's standardised path; the tests are plain text prefix tests, so the caller resolves
// "..", "~" and doubled slashes first. An empty or relative home has no Applications folder.
bool inApplicationsFolder(std::string_view bundlePath, std::string_view home);

}  // namespace vantle
