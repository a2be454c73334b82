#pragma once

#include "app/program_processes.h"

namespace vantle {

// Processes by their ids; a copy is opened by the workspace from the running application's
// bundle as a new instance, so that the system starts it as it starts any application (its
// own permissions, its place among the running applications), not as our child. Main thread only.
class MacProgramProcesses final : public ProgramProcesses {
public:
    int currentProcessId() const override;
    bool running(int processId) const override;
    // Waits up to ten seconds for the workspace's answer.
    std::optional<std::string> startCopy(const std::vector<std::string>& arguments) override;
};

}  // namespace vantle
