#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "display/ddc/ddc_bus.h"
#include "display/ddc/ddc_monitor_worker.h"
#include "display/native_display_control.h"

namespace vantle::ddc {

// External monitors' brightness through DDC/CI luminance (VCP feature 0x10), by way of
// libddcutil.
//
// The library is loaded only when some display is left to this backend and the machine has I2C
// buses; if it cannot be loaded, nothing is controlled. Finding the monitors and talking to each
// of them happens on threads of this backend (see DdcMonitorWorker), so no call here waits for a
// monitor or for the bus. Main thread only, like the interface.
//
// Displays come and go while the program runs. A display that stays keeps its monitor's thread,
// and with it the open monitor and its level. A display that goes has its thread stopped at once.
// Only a display not seen before starts a search on the bus, in the background; the monitors of
// the other displays are not looked for again.
class DdcBrightness final : public NativeDisplayControl {
public:
    struct Options {
        // Whether the machine has I2C buses at all.
        std::function<bool()> hasI2cBuses;
        // Loads the DDC library; null when it cannot be loaded. Called at most once.
        std::function<std::shared_ptr<DdcBus>()> loadBus;
        DdcTimings timings;
    };

    // The real machine: /dev/i2c-* and libddcutil.
    DdcBrightness();
    explicit DdcBrightness(Options options);
    // Stops every thread, waiting about a second at most for monitors that do not answer.
    ~DdcBrightness() override;
    DdcBrightness(const DdcBrightness&) = delete;
    DdcBrightness& operator=(const DdcBrightness&) = delete;

    // displays: those that no backend earlier in the chain controls; an empty list loads
    // nothing. The monitors are found and matched in the background, so get() stays empty and
    // set() false for a display until its monitor has been found.
    void updateDisplays(const std::vector<DisplayIdentity>& displays) override;

    // Something changed at the machine's connectors (a cable plugged in, a monitor switched on):
    // the displays that have no monitor yet are looked for once more, in the background.
    void searchAgain();

    // The machine woke from sleep: every monitor is opened anew and its level read again (see
    // DdcMonitorWorker::reopen).
    void reopenAfterSleep();

    // The last level known for the display, or the one it is being brought to; empty when the
    // display is not a monitor found on the bus or its level has not been read yet.
    std::optional<float> get(std::uint32_t displayId) override;

    // Queues the level for the display's monitor and returns true when the display is one this
    // backend controls. The real outcome arrives later: a refused write is retried a couple of
    // times with growing pauses, and after that the level is read again, so get() tells the truth.
    bool set(std::uint32_t displayId, float level) override;

    // Asks every controlled monitor to read its level again soon (after the user may have used
    // the monitor's own buttons).
    void refresh();

private:
    struct Shared;
    static void discover(std::shared_ptr<Shared> shared);
    std::shared_ptr<DdcMonitorWorker> workerFor(std::uint32_t displayId) const;
    // Called with the shared state locked: asks for a search when some wanted display without a
    // monitor has not been searched for yet.
    void requestSearchLocked();

    Options options_;
    bool loadTried_ = false;
    std::shared_ptr<Shared> shared_;
    std::thread discovery_;
};

}  // namespace vantle::ddc
