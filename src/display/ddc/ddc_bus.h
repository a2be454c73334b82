#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantle::ddc {

// The VESA feature code of a monitor's luminance, the control its own menu calls brightness.
inline constexpr std::uint8_t kLuminanceFeature = 0x10;

// One monitor the DDC library found on an I2C bus.
struct DdcDisplayInfo {
    // Identifies the monitor to the bus that listed it; meaningless to anyone else.
    std::uint64_t token = 0;
    // The first 128 bytes of the monitor's EDID.
    std::vector<std::uint8_t> edid;
    // The DRM connector the bus belongs to ("card0-DP-1"); empty when it could not be told.
    std::string connector;
    bool operator==(const DdcDisplayInfo&) const = default;
};

// A continuous feature's value and its maximum, both from the same reply.
struct VcpReading {
    std::uint16_t current = 0;
    std::uint16_t maximum = 0;
};

// An open monitor. Destroying it closes it. Every call may take tens of milliseconds (or block
// for much longer on a monitor that stopped answering), so it is only used from the thread that
// opened it, never from the interface thread.
class DdcMonitorHandle {
public:
    virtual ~DdcMonitorHandle() = default;

    // Reads a continuous feature; empty when the monitor did not answer or sent nonsense.
    virtual std::optional<VcpReading> read(std::uint8_t feature) = 0;

    // Writes a continuous feature; false when the monitor refused or did not answer.
    virtual bool write(std::uint8_t feature, std::uint16_t value) = 0;

    // Whether the handle stopped reaching its monitor for good: the library let go of it when it
    // looked at the buses again. Its commands then fail at once, and the monitor has to be opened
    // anew.
    virtual bool lost() const { return false; }
};

// The few things this backend needs from a DDC/CI library: which monitors there are, and a way
// to open one. Implemented by libddcutil, loaded at run time, and by stand-ins in tests.
// list() and open() may be slow and are called off the interface thread; they may be called
// from different threads, but each handle stays on the thread that opened it.
class DdcBus {
public:
    virtual ~DdcBus() = default;

    // The monitors that answer DDC/CI, as the library found them when it first looked; empty when
    // there are none or detection failed.
    virtual std::vector<DdcDisplayInfo> list() = 0;

    // Looks at the buses again, for monitors attached since the last look, and lists the monitors
    // that answer now. A monitor listed before keeps its token. Handles opened before may be lost
    // (see DdcMonitorHandle::lost), because the library lets go of every open monitor when it
    // looks again. Slower than list(): every bus is asked again.
    virtual std::vector<DdcDisplayInfo> rescan() = 0;

    // Opens a monitor listed before; null when it cannot be opened.
    virtual std::unique_ptr<DdcMonitorHandle> open(std::uint64_t token) = 0;
};

// Loads libddcutil and wraps it as a bus; null when the library or one of its functions is
// missing. The library prints to standard output while it loads, so that output is swallowed.
std::shared_ptr<DdcBus> loadLibddcutilBus();

}  // namespace vantle::ddc
