#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vantle {

// The process id after the first "--relaunch-parent": the instance that started this one for a
// language change and that must end before this one takes the keys, the tray and the timers.
// Absent when the switch is missing or last, or its value is not a decimal 32-bit number of at
// least 1 (an optional sign, then digits only); such a start simply does not wait.
std::optional<int> relaunchParent(const std::vector<std::string>& arguments);

}  // namespace vantle
