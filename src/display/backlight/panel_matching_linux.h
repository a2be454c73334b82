#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "display/native_display_control.h"

namespace vantle::backlight {

// The kernel's backlight types, best first: firmware interfaces know the panel's real range and
// cooperate with the firmware's own hotkeys, platform drivers come next, and raw devices write the
// GPU's registers directly.
enum class BacklightType { Firmware, Platform, Raw };

// One device of the kernel's backlight class.
struct BacklightDevice {
    std::string name;  // the folder name under /sys/class/backlight, such as "intel_backlight"
    BacklightType type = BacklightType::Raw;
    std::filesystem::path device;  // where its device link leads; empty without one
    bool operator==(const BacklightDevice&) const = default;
};

// A connected built-in panel connector (eDP, LVDS or DSI) of a DRM card.
struct PanelConnector {
    std::string sysfsName;  // "card0-eDP-1"
    std::string connector;  // "eDP-1", the name RandR gives the same output
    std::vector<std::uint8_t> edid;  // empty when the connector has no EDID file
    // The card's own folder and its device (the GPU); a backlight whose device lies under one of
    // them belongs to this card.
    std::vector<std::filesystem::path> cardPaths;
};

// True for DRM connector names of built-in panels, such as "card0-eDP-1" or "card1-LVDS-1".
bool isInternalConnectorName(const std::string& sysfsName);

// The panel connector showing the display: the one whose EDID starts with the same 128 bytes,
// and when several do (two identical panels), the one of the display's connector. Empty when no
// connector matches for certain.
std::optional<PanelConnector> panelShowing(const DisplayIdentity& display,
                                           const std::vector<PanelConnector>& panels);

// The backlight that drives the panel: the best type first; among devices of that type, one that
// belongs to the panel's card, then by name. Empty when there is none.
std::optional<BacklightDevice> backlightFor(const PanelConnector& panel,
                                            const std::vector<BacklightDevice>& backlights);

}  // namespace vantle::backlight
