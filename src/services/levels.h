#pragma once

#include <cmath>
#include <cstddef>

// Helpers for the levels that volume and brightness share: a 32-bit float from 0 to 1.
namespace vantle {

// Every write clamps its level: below 0 and NaN give 0, above 1 gives 1.
inline float clampLevel(float level) {
    if (!(level > 0.0f)) {
        return 0.0f;
    }
    return level > 1.0f ? 1.0f : level;
}

// The percentage shown for a level: level × 100, rounded half away from zero. The product is
// taken in single precision, as the level is, so that 0.005 shows as 1 %.
inline long percentage(float level) {
    return std::lround(level * 100.0f);
}

}  // namespace vantle

namespace vantle::ControlPlan {

// The most displays a brightness step, and the most devices a volume command, acts on.
inline constexpr std::size_t limit = 6;

}  // namespace vantle::ControlPlan
