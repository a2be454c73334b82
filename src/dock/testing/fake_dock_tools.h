#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "dock/process_runner.h"
#include "services/property_list.h"

namespace vantle::testing {

// The Dock and its tools in memory: "defaults" reads and writes the Dock's list, "killall"
// freezes, thaws and restarts the Dock, "codesign" signs nothing. Each call is recorded as a
// line of the tool's name and arguments, an XML argument shown as "<xml>". Safe to call from
// the coordinator's queue; read its state once the queue is idle.
class FakeDockTools final : public ProcessRunner {
public:
    FakeDockTools() : ProcessRunner(std::string(kSystemToolDirectory)) {}

    Expected<ProcessExit> execute(const std::filesystem::path& executable, const std::vector<std::string>& arguments,
                                  ErrorOutput errorOutput) override;

    // Sets the Dock's list; the Dock has read it, as after a start.
    void setApps(PlistValue::Array list);
    std::vector<std::string> callsOf(const std::string& prefix) const;

    std::mutex mutex;
    std::vector<std::string> calls;
    PlistValue::Array apps;
    bool frozen = false;
    int restarts = 0;
    // For each write through "defaults": whether the Dock was frozen at that moment.
    std::vector<bool> frozenAtWrites;

    // What "defaults export" prints instead of the list, when set.
    std::optional<std::string> exportOutput;
    // Tools that cannot be started (by name).
    std::set<std::string> missingTools;
    // Calls (by their recorded line) that fail the next n times, printing failureText.
    std::map<std::string, int> failures;
    int failureStatus = 1;
    std::string failureText = "the tool failed\n";
    // Readings by "defaults export", counted from 1.
    int readings = 0;
    // The readings, by number, that leave out the tile of the last append, as from a Dock that
    // has not picked it up (yet).
    std::set<int> hiddenReadings;
    // The readings, by number, at which "defaults export" fails.
    std::set<int> failingReadings;
    // The next n restarts put back the list the Dock knew before (as a Dock that writes its
    // own copy over a change made while it ran).
    int droppingRestarts = 0;

private:
    Expected<ProcessExit> defaults(const std::vector<std::string>& arguments, ErrorOutput errorOutput);
    void restart();

    PlistValue::Array dockMemory_;
    std::optional<PlistValue> lastAdded_;
};

}  // namespace vantle::testing
