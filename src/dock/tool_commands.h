#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "dock/command_error.h"
#include "dock/process_runner.h"

namespace vantle {

// The two ways the Dock code runs a system tool. Both return the tool's standard output when it
// exits with status 0 and pass on the start error when it cannot be started; they differ in
// what a failing tool becomes.

// For the commands of the settings window: standard error is captured, and a failing tool
// gives an error of domain "VantleControl" whose code is the exit status and whose text is the
// tool's own error output, or the text of "s112" when that output is not UTF-8.
Expected<std::string> runTool(ProcessRunner& runner, const std::filesystem::path& path,
                              const std::vector<std::string>& arguments);

// For the Dock coordinator's work queue: standard error is discarded, and a failing tool gives
// the coordinator's own error, the text of "s119" with the exit status.
Expected<std::string> runDockCommand(ProcessRunner& runner, const std::filesystem::path& path,
                                     const std::vector<std::string>& arguments);

// The coordinator's own error: domain "VantleControl.Dock", code 1, the given text.
CommandError dockCoordinatorFailure(std::string message);

}  // namespace vantle
