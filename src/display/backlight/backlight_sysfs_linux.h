#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "display/backlight/panel_matching_linux.h"

namespace vantle::backlight {

// Reading and writing the kernel's backlight and DRM classes below a root folder ("/" on a real
// system, a folder laid out the same way in tests).

// The backlight class devices of a known type, in no particular order.
std::vector<BacklightDevice> readBacklights(const std::filesystem::path& root);

// The DRM connectors of built-in panels whose status is "connected".
std::vector<PanelConnector> readConnectedPanels(const std::filesystem::path& root);

// A sysfs attribute holding one unsigned decimal number; empty when it cannot be read or parsed.
std::optional<std::uint32_t> readNumber(const std::filesystem::path& path);

enum class WriteResult {
    Written,
    NotWritable,  // we may not open the attribute for writing; someone privileged has to
    Refused,      // we could open it, but the driver did not take the value
};

// Writes an unsigned decimal number to a sysfs attribute.
WriteResult writeNumber(const std::filesystem::path& path, std::uint32_t value);

}  // namespace vantle::backlight
