#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace vantle::ControlPlan {

using DisplayLevel = std::pair<std::uint32_t, std::optional<float>>;
using PlannedLevel = std::pair<std::uint32_t, float>;

// The writes of a relative brightness step over displays listed in id order with their levels
// (absent where unreadable). Empty with no display or more than the limit, or when none can be
// read. Linked displays all go to the first readable display's level plus delta; unlinked ones
// each move from their own level. Results are clamped to 0..1.
std::vector<PlannedLevel> brightness(const std::vector<DisplayLevel>& levels, bool linked, float delta);

}  // namespace vantle::ControlPlan
