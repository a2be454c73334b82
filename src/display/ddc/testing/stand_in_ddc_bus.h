#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "display/ddc/ddc_bus.h"

namespace vantle::ddc::testing {

// A monitor that exists only in memory, as a test describes it.
struct StandInMonitor {
    std::vector<std::uint8_t> edid;
    std::string connector;
    std::uint16_t current = 50;
    std::uint16_t maximum = 100;
};

// A DDC bus with stand-in monitors, for testing everything around the library without a
// monitor. Every command can be made slow, can be held until released, or can fail; what the
// backend sent is recorded, and tests wait for it with a time limit instead of sleeping.
//
// Like the library, it finds the monitors once, when first listed: a monitor attached later
// shows only after a rescan, and a rescan loses every handle opened before it. A monitor
// detached answers no command any more and is not found by the next rescan.
class StandInDdcBus final : public DdcBus {
public:
    explicit StandInDdcBus(std::vector<StandInMonitor> monitors);

    std::vector<DdcDisplayInfo> list() override;
    std::vector<DdcDisplayInfo> rescan() override;
    std::unique_ptr<DdcMonitorHandle> open(std::uint64_t token) override;

    // A monitor plugged in on a bus of its own; returns its number for the calls below.
    std::size_t attach(StandInMonitor monitor);
    // The monitor is unplugged.
    void detach(std::size_t monitor);
    // Holds every listing and rescan until releaseSearches(), as a slow detection would.
    void holdSearches();
    void releaseSearches();
    int listings() const;
    int rescans() const;

    // How long every command to the monitor takes.
    void setDelay(std::size_t monitor, std::chrono::milliseconds delay);
    // Holds every command to the monitor until release(), as a monitor that stopped answering.
    void hold(std::size_t monitor);
    void release(std::size_t monitor);
    void setFailWrites(std::size_t monitor, bool fail);
    // Changes the level as the monitor's own buttons would.
    void setCurrent(std::size_t monitor, std::uint16_t current);

    std::vector<std::uint16_t> writes(std::size_t monitor) const;
    int reads(std::size_t monitor) const;
    int writeAttempts(std::size_t monitor) const;
    int opens(std::size_t monitor) const;
    int closes(std::size_t monitor) const;
    // Whether a command to the monitor is running at this moment.
    bool busy(std::size_t monitor) const;

    // Waits until the condition holds, at most the given time; true when it does.
    bool waitUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds limit = std::chrono::seconds(5)) const;

    struct Inner;
    struct MonitorRecord;

private:
    template <typename Change>
    void change(std::size_t monitor, Change edit);
    template <typename Field>
    Field field(std::size_t monitor, Field MonitorRecord::*member) const;

    std::shared_ptr<Inner> inner_;
};

}  // namespace vantle::ddc::testing
