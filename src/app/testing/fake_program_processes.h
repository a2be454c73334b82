#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/program_processes.h"

namespace vantle::testing {

// Processes as a set of ids, and the copies started as their argument lists.
class FakeProgramProcesses final : public ProgramProcesses {
public:
    int currentProcessId() const override { return ownId; }
    bool running(int processId) const override { return runningIds.count(processId) != 0; }
    std::optional<std::string> startCopy(const std::vector<std::string>& arguments) override {
        started.push_back(arguments);
        return startError;
    }

    int ownId = 4242;
    std::set<int> runningIds;
    std::optional<std::string> startError;
    std::vector<std::vector<std::string>> started;
};

}  // namespace vantle::testing
