#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "display/screen_system.h"

namespace vantle {

// The desktop's work area, the part of it that panels and docks leave free, as the window
// manager announces it: four numbers (x, y, width, height) per virtual desktop. Empty when the
// numbers say nothing usable for that desktop.
std::optional<ScreenFrame> workAreaOf(const std::vector<std::uint32_t>& numbersPerDesktop, std::uint32_t desktop);

// The part of a screen's frame that the work area leaves free. The work area spans every screen,
// so a panel along one screen's edge takes that strip from this screen only where it lies
// inside it. Empty when there is no work area or it does not reach the screen at all, which
// then counts as wholly free.
std::optional<ScreenFrame> visiblePart(const ScreenFrame& frame, const std::optional<ScreenFrame>& workArea);

}  // namespace vantle
