#include "keys/osd_layout.h"

#include <algorithm>

#include "localization/localization.h"
#include "services/levels.h"

namespace vantle {
namespace {

constexpr int kAboveScreenBottom = 85;
constexpr int kAboveVisibleBottom = 24;

}  // namespace

ScreenFrame osdPanelFrame(const ScreenFrame& screen, const ScreenFrame& visible) {
    // With y growing downwards, "higher of the two" is the smaller bottom edge.
    const int bottom = std::min(screen.y + screen.height - kAboveScreenBottom,
                                visible.y + visible.height - kAboveVisibleBottom);
    const int centre = screen.x + screen.width / 2;
    return {centre - kOsdWidth / 2, bottom - kOsdHeight, kOsdWidth, kOsdHeight};
}

std::string levelSuffix(float level) {
    return " \u00B7 " + std::to_string(percentage(level)) + " %";
}

OsdContent osdContent(std::optional<float> volume, bool muted, float brightness) {
    OsdContent content;
    const float level = volume.value_or(brightness);
    if (!volume) {
        content.symbol = OsdSymbol::Brightness;
        content.description = L("s000");
        content.text = L("s000") + levelSuffix(level);
    } else if (muted) {
        content.symbol = OsdSymbol::SpeakerMuted;
        content.description = L("s122");
        content.text = L("s123");
    } else {
        content.symbol = *volume == 0.0f ? OsdSymbol::SpeakerMuted : OsdSymbol::Speaker;
        content.description = L("s122");
        content.text = L("s122") + levelSuffix(level);
    }
    const float filled = level * static_cast<float>(kOsdSegments);
    for (int segment = 0; segment < kOsdSegments; ++segment) {
        content.lit[static_cast<std::size_t>(segment)] = !muted && filled > static_cast<float>(segment);
    }
    return content;
}

}  // namespace vantle
