#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantle {

// What identifies an attached display across the system's layers: the window system's display
// id, the monitor's EDID block and the connector it is plugged into (the RandR output name,
// such as "eDP-1" or "DP-2").
struct DisplayIdentity {
    std::uint32_t displayId = 0;
    std::vector<std::uint8_t> edid;
    std::string connector;
    bool operator==(const DisplayIdentity&) const = default;
};

// One way of controlling a display's own brightness on this platform (a built-in panel's
// backlight, an external monitor's DDC/CI luminance). Displays are matched to devices by EDID,
// with the connector telling identical monitors apart; never by guessing from names.
// Main thread only; an implementation that talks to slow hardware does so on a thread of its own
// and never blocks the caller.
class NativeDisplayControl {
public:
    virtual ~NativeDisplayControl() = default;

    // The attached displays changed: learn again which of them this backend controls.
    virtual void updateDisplays(const std::vector<DisplayIdentity>& displays) = 0;

    // The display's level 0..1; empty when this backend does not control it or cannot read it.
    virtual std::optional<float> get(std::uint32_t displayId) = 0;

    // Sets the display's level 0..1; false when this backend does not control it or the write
    // was refused.
    virtual bool set(std::uint32_t displayId, float level) = 0;
};

}  // namespace vantle
