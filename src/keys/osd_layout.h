#pragma once

#include <array>
#include <optional>
#include <string>

#include "display/screen_system.h"

namespace vantle {

// The on-screen display's panel: 210 × 190 points, centred on the whole screen, standing 85
// points above the bottom of the screen but never less than 24 above the bottom of the visible
// area (so that it clears a panel or dock there). Frames are in the desktop's coordinates, y
// growing downwards.
inline constexpr int kOsdWidth = 210;
inline constexpr int kOsdHeight = 190;
inline constexpr int kOsdCornerRadius = 22;
inline constexpr int kOsdSegments = 16;

ScreenFrame osdPanelFrame(const ScreenFrame& screen, const ScreenFrame& visible);

enum class OsdSymbol { Brightness, Speaker, SpeakerMuted };

// What one panel shows.
struct OsdContent {
    OsdSymbol symbol = OsdSymbol::Brightness;
    std::string description;  // the symbol's accessible description
    std::string text;         // the text line
    std::array<bool, kOsdSegments> lit{};
    bool operator==(const OsdContent&) const = default;
};

// The content for a volume (when volume is given) or for a display's brightness level: the
// symbol, the title with " · 50 %" after it (the muted text alone when muted), and the segments
// that level × 16 lights. Nothing is clamped: an odd level shows as it is.
OsdContent osdContent(std::optional<float> volume, bool muted, float brightness);

// " · " followed by the level in whole percent and " %".
std::string levelSuffix(float level);

}  // namespace vantle
