#pragma once

#include <optional>
#include <string>
#include <vector>

#include "display/screen_system.h"

namespace vantle {

// What the on-screen display check looks at in one panel, read from the window system.
struct OsdPanelFacts {
    ScreenFrame frame;
    bool inputTransparent = false;
    bool focusable = true;
    bool opaque = true;
    int backgroundAlpha = 255;
    bool shadow = true;
    bool hasMask = false;
    int maskCornerAlpha = 255;  // the mask image's pixel at (0, 0), 0..255
    double maskCentreAlpha = 0; // at (width / 2, height / 2), 0..1
    // What the screen shows where the panel stands over a plain light backing: the backing still
    // at the corner (1, 1), so the window is cut to its rounded shape even where no compositor
    // blends it; the dark backdrop at (width / 2, height / 2).
    bool shownCornerUncovered = false;
    bool shownCentreCovered = false;
};

// The failure line for a panel, or empty when the panel passes. screens are the system's
// screens in its order; the panel must lie wholly inside one of them, centred on it.
std::optional<std::string> osdPanelFailure(const OsdPanelFacts& panel, const std::vector<ScreenFrame>& screens);

inline constexpr const char* kOsdPassLines[] = {
    "PASS: transparent corners, opaque mask center, no rectangular window shadow",
    "PASS: non-interactive OSD centered in screen, above bottom edge",
};

}  // namespace vantle
