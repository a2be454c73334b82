#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vantle {

// The program's own processes: this one, a copy started to replace it, and the one it replaces.
class ProgramProcesses {
public:
    virtual ~ProgramProcesses() = default;
    // This process's id, which a copy started to replace it waits on.
    virtual int currentProcessId() const = 0;
    // Whether the process with this id still runs.
    virtual bool running(int processId) const = 0;
    // Starts a new copy of this very program, wherever it was started from, with the arguments,
    // detached from this one. The error's description when it could not be started.
    virtual std::optional<std::string> startCopy(const std::vector<std::string>& arguments) = 0;
};

}  // namespace vantle
