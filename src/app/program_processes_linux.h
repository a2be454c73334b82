#pragma once

#include "app/program_processes.h"

namespace vantle {

// Processes by their ids; a copy is started from /proc/self/exe, the very file this process
// runs, whichever folder or link it was started through.
class LinuxProgramProcesses final : public ProgramProcesses {
public:
    int currentProcessId() const override;
    bool running(int processId) const override;
    std::optional<std::string> startCopy(const std::vector<std::string>& arguments) override;
};

}  // namespace vantle
