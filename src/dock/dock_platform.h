#pragma once

#include <filesystem>

#include "dock/process_runner.h"

namespace vantle {

// Whether the Dock commands have a Dock to act on. On macOS always; elsewhere only when the
// runner's tools are not the system's own, that is when stand-ins of the macOS tools have been
// put in their place. Where this is false, no Dock command may run.
bool dockAvailable(const ProcessRunner& runner);

// The folder the runner takes the Dock's tools from: the system's, unless the environment
// variable VANTLE_DOCK_TOOLS names another (for tests that run the whole program).
std::filesystem::path dockToolDirectory();

// The user's folder of application data, in which the separators are kept.
std::filesystem::path applicationSupportDirectory();

}  // namespace vantle
