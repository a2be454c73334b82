#include "display/brightness_plan.h"

#include <cmath>

#include "services/levels.h"

namespace vantle::ControlPlan {

std::vector<PlannedLevel> brightness(const std::vector<DisplayLevel>& levels, bool linked, float delta) {
    if (levels.empty() || levels.size() > limit) {
        return {};
    }
    std::vector<PlannedLevel> readable;
    for (const auto& [display, level] : levels) {
        if (level && std::isfinite(*level)) {
            readable.emplace_back(display, *level);
        }
    }
    if (readable.empty()) {
        return {};
    }
    const float base = readable.front().second;
    std::vector<PlannedLevel> plan;
    for (const auto& [display, own] : readable) {
        plan.emplace_back(display, clampLevel(delta + (linked ? base : own)));
    }
    return plan;
}

}  // namespace vantle::ControlPlan
