#pragma once

#include <filesystem>
#include <string>

#include "dock/process_runner.h"

namespace vantle {

// Runs tools with posix_spawn. Holds no state but the tool folder, so threads may share it.
class PosixProcessRunner final : public ProcessRunner {
public:
    explicit PosixProcessRunner(std::filesystem::path toolDirectory = std::string(kSystemToolDirectory))
        : ProcessRunner(std::move(toolDirectory)) {}

    Expected<ProcessExit> execute(const std::filesystem::path& executable, const std::vector<std::string>& arguments,
                                  ErrorOutput errorOutput) override;
};

}  // namespace vantle
