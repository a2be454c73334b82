#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "services/levels.h"

namespace vantle::ControlPlan {

// The leaf devices under root, ascending. children lists a device's sub-devices (empty for a
// plain device, which is then its own leaf). Empty when the devices form a cycle, or when
// there are no leaves or more than the limit: a command acts on all its devices or on none.
std::vector<std::uint32_t> audioLeaves(std::uint32_t root,
                                       const std::function<std::vector<std::uint32_t>(std::uint32_t)>& children);

}  // namespace vantle::ControlPlan
