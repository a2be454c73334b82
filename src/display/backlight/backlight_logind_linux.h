#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace vantle::backlight {

// Asks logind to write a backlight's brightness attribute, as it does for the user of the active
// session, who may not write the attribute itself. Uses the system bus (DBUS_SYSTEM_BUS_ADDRESS
// when set). Returns within the timeout; true once logind confirms the write.
bool setBrightnessThroughLogind(const std::string& backlightName, std::uint32_t value,
                                std::chrono::milliseconds timeout);

}  // namespace vantle::backlight
