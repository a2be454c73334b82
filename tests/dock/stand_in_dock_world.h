#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "dock/dock_coordinator.h"
#include "services/property_list.h"
#include "stand_in_state.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle::testing {

// A stand-in Dock running as a real process under a supervisor that restarts it, with
// stand-ins of "defaults", "killall" and "codesign" in one temporary folder that a process
// runner takes as its tool folder. The Dock's preferences are a property-list file there.
class StandInDockWorld {
public:
    // Starts the Dock with these tiles in its list.
    explicit StandInDockWorld(const PlistValue::Array& apps = {});
    // Ends the supervisor, which ends the Dock, even a stopped one.
    ~StandInDockWorld();
    StandInDockWorld(const StandInDockWorld&) = delete;
    StandInDockWorld& operator=(const StandInDockWorld&) = delete;

    const std::filesystem::path& toolDirectory() const { return state_.path(); }
    const standin::StateFolder& state() const { return state_; }

    // The Dock's preferences as stored, and its tile list (empty when unreadable).
    std::string preferencesBytes() const;
    PlistValue::Array apps() const;
    void writePreferences(const std::string& bytes) const;

    // Asks for a behaviour of the stand-ins (see their sources).
    void set(const std::string& behaviour, const std::string& value) const;
    // The readings, counted from now, that leave out the last appended tile.
    void hideAddedTileAtReadings(const std::vector<int>& readings) const;

    // Every tool call so far, with the Dock's state at the call in brackets.
    std::vector<std::string> log() const;
    std::vector<std::string> logOf(const std::string& prefix) const;
    int dockStarts() const;
    bool dockStopped() const { return state_.dockStopped(); }
    bool dockRunning() const { return state_.dockState() == "running"; }

private:
    TemporaryDirectory folder_;
    standin::StateFolder state_;
    std::unique_ptr<RunningChild> supervisor_;
};

// The stand-in killall returns only once a killed Dock runs again, which is what the coordinator's
// pauses wait for with a real Dock; a coordinator given this sleep does not wait a second time.
inline DockCoordinator::Sleep skipDockPauses() {
    return [](std::chrono::milliseconds) {};
}

}  // namespace vantle::testing
