#pragma once

#include <filesystem>
#include <string>

namespace vantle::ddc {

// Whether the machine has any I2C bus device (/dev/i2c-N). Without one there is no DDC/CI, so
// the library need not be loaded at all.
bool hasI2cBuses(const std::filesystem::path& devDir = "/dev");

// The DRM connector ("card0-DP-1") whose monitor is reached through I2C bus N, found in sysfs:
// either the bus is a child of the connector (DisplayPort AUX channels) or the connector's "ddc"
// link points at it. Empty when neither is the case.
std::string drmConnectorOfI2cBus(int busNumber, const std::filesystem::path& sysfs = "/sys");

}  // namespace vantle::ddc
