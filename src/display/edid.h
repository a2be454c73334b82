#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantle {

// The monitor name an EDID block carries in its display-name descriptor, with the line feed
// that ends it and the blank padding after it removed. Empty when the block has none or is not
// an EDID block at all.
std::optional<std::string> edidMonitorName(const std::vector<std::uint8_t>& edid);

// Whether two EDIDs describe the same monitor: their base blocks (the first 128 bytes) match.
bool sameMonitor(const std::vector<std::uint8_t>& left, const std::vector<std::uint8_t>& right);

}  // namespace vantle
