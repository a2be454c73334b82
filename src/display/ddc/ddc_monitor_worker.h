#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "display/ddc/ddc_bus.h"

namespace vantle::ddc {

// How patiently a monitor is treated.
struct DdcTimings {
    // How often the level is read again, to notice changes made with the monitor's own buttons.
    std::chrono::milliseconds refreshInterval{10'000};
    // The pauses before each retry of a failed write; after the last, the level is read again.
    std::vector<std::chrono::milliseconds> retryDelays{std::chrono::milliseconds{100},
                                                       std::chrono::milliseconds{400}};
    // How long after the machine woke up the level is read again. Monitors come out of standby
    // when the picture returns, and many do not answer DDC/CI for a moment after that.
    std::chrono::milliseconds settleAfterWake{3000};
};

// The thread that talks to one monitor. It opens the monitor once and keeps it open, reads its
// luminance once and then every refresh interval, and writes what it is given. Each monitor has
// a thread of its own because a DDC command blocks inside the library for tens of milliseconds,
// and a monitor that stopped answering blocks for much longer: no time limit can interrupt a
// call that is already running, so only a separate thread keeps one monitor from stalling
// another.
//
// The public calls never wait for the monitor and may be made from any thread.
class DdcMonitorWorker {
public:
    DdcMonitorWorker(std::shared_ptr<DdcBus> bus, DdcDisplayInfo monitor, DdcTimings timings);
    // Stops the thread, waiting at most a second for it; see stopBy().
    ~DdcMonitorWorker();
    DdcMonitorWorker(const DdcMonitorWorker&) = delete;
    DdcMonitorWorker& operator=(const DdcMonitorWorker&) = delete;

    const DdcDisplayInfo& monitor() const { return monitor_; }

    // The level 0..1 the monitor is at or is being brought to: the newest level not yet
    // written, else the last one read or written successfully; empty until the first reading.
    std::optional<float> level() const;

    // Queues a level 0..1. Levels that pile up while the monitor is busy replace each other, so
    // that only the newest one is sent.
    void write(float level);

    // Asks for the level to be read again soon.
    void refresh();

    // The machine woke from sleep: the monitor may have been switched off and on, and the handle
    // with it. The handle is closed at once and the monitor opened again by its next command,
    // the level being read again once the monitor has settled.
    void reopen();

    // Asks the thread to close the monitor and end, without waiting.
    void requestStop();

    // Waits until the thread ended or the deadline passed. A thread still inside a library call
    // at the deadline is let go: it owns everything it touches and ends when the call returns.
    void stopBy(std::chrono::steady_clock::time_point deadline);

    // What the caller and the thread share; defined beside the thread's code.
    struct State;

private:
    static void run(std::shared_ptr<State> state, std::shared_ptr<DdcBus> bus, DdcDisplayInfo monitor,
                    DdcTimings timings);

    DdcDisplayInfo monitor_;
    std::shared_ptr<State> state_;
    std::thread thread_;
};

}  // namespace vantle::ddc
