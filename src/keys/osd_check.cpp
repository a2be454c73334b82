#include "keys/osd_check.h"

#include <cmath>

#include "keys/osd_layout.h"

namespace vantle {
namespace {

bool contains(const ScreenFrame& outer, const ScreenFrame& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

double centreX(const ScreenFrame& frame) {
    return frame.x + frame.width / 2.0;
}

}  // namespace

std::optional<std::string> osdPanelFailure(const OsdPanelFacts& panel, const std::vector<ScreenFrame>& screens) {
    const ScreenFrame* home = nullptr;
    for (const ScreenFrame& screen : screens) {
        if (contains(screen, panel.frame)) {
            home = &screen;
            break;
        }
    }
    if (!panel.inputTransparent || panel.focusable || panel.frame.width != kOsdWidth || home == nullptr ||
        !(std::fabs(centreX(panel.frame) - centreX(*home)) < 1.0)) {
        return "FAIL: OSD geometry or focus";
    }
    if (panel.opaque || panel.backgroundAlpha != 0 || panel.shadow || !panel.hasMask || panel.maskCornerAlpha != 0 ||
        !(panel.maskCentreAlpha > 0.99) || !panel.shownCornerUncovered || !panel.shownCentreCovered) {
        return "FAIL: OSD transparency or backdrop mask";
    }
    return std::nullopt;
}

}  // namespace vantle
