#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle::testing {

// A private dbus-daemon standing in for the system bus, with DBUS_SYSTEM_BUS_ADDRESS pointing at
// it while the object lives, and optionally the logind stand-in on it. The daemon's configuration
// allows everything: the tests are about our calls, not about bus policy.
class StandInSystemBus {
public:
    // Starts the daemon and waits until it accepts connections; check running() afterwards.
    StandInSystemBus();
    ~StandInSystemBus();
    StandInSystemBus(const StandInSystemBus&) = delete;
    StandInSystemBus& operator=(const StandInSystemBus&) = delete;

    bool running() const { return running_; }

    // Starts the logind stand-in for the tree at root and waits until it owns its name; false
    // when it did not in time.
    bool startLogind(const std::filesystem::path& root);
    // What the stand-in was asked, one "<subsystem> <name> <value>" line per call.
    std::string logindCalls() const;
    // Stops the stand-in without ending it: it keeps its name but answers nothing.
    void freezeLogind();
    // Has the stand-in announce PrepareForSleep(goingToSleep), as logind does before a suspend
    // and after the wake; true once it was sent.
    bool announceSleep(bool goingToSleep);

private:
    TemporaryDirectory folder_;
    std::unique_ptr<RunningChild> daemon_;
    std::unique_ptr<RunningChild> logind_;
    std::optional<std::string> previousAddress_;
    bool running_ = false;
};

}  // namespace vantle::testing
