#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "dock/process_runner.h"

namespace vantle {

// Runs the system tools with posix_spawn. A tool inherits only its standard input, output and
// error, whichever thread starts it and whatever else the process has open at that moment.
// Holds no state but the tool folder, so threads may share it.
class MacProcessRunner final : public ProcessRunner {
public:
    explicit MacProcessRunner(std::filesystem::path toolDirectory = std::string(kSystemToolDirectory))
        : ProcessRunner(std::move(toolDirectory)) {}

    Expected<ProcessExit> execute(const std::filesystem::path& executable, const std::vector<std::string>& arguments,
                                  ErrorOutput errorOutput) override;
};

}  // namespace vantle
