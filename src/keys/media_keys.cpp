#include "keys/media_keys.h"

#include <algorithm>

#include "localization/localization.h"
#include "services/levels.h"

namespace vantle {
namespace {

// The XF86 key symbols that keyboards send for their media keys.
constexpr std::uint32_t kXF86MonBrightnessUp = 0x1008FF02;
constexpr std::uint32_t kXF86MonBrightnessDown = 0x1008FF03;
constexpr std::uint32_t kXF86AudioLowerVolume = 0x1008FF11;
constexpr std::uint32_t kXF86AudioMute = 0x1008FF12;
constexpr std::uint32_t kXF86AudioRaiseVolume = 0x1008FF13;

constexpr std::uint16_t kShiftMask = 1 << 0;
constexpr std::uint16_t kMod1Mask = 1 << 3;

std::string keyName(int key) {
    switch (key) {
    case kSoundUp: return L("s131");
    case kSoundDown: return L("s132");
    case kMute: return L("s123");
    case kBrightnessUp: return L("s107");
    case kBrightnessDown: return L("s108");
    default: return L("s109");
    }
}

}  // namespace

std::optional<int> mediaKeyOfKeysym(std::uint32_t keysym) {
    switch (keysym) {
    case kXF86AudioRaiseVolume: return kSoundUp;
    case kXF86AudioLowerVolume: return kSoundDown;
    case kXF86MonBrightnessUp: return kBrightnessUp;
    case kXF86MonBrightnessDown: return kBrightnessDown;
    case kXF86AudioMute: return kMute;
    default: return std::nullopt;
    }
}

bool isFineStep(std::uint16_t modifierState) {
    return (modifierState & kShiftMask) != 0 && (modifierState & kMod1Mask) != 0;
}

float MediaKeyHandler::loudestLevel() {
    AudioSnapshotScope snapshot(hal_);
    float loudest = 0.0f;
    for (const Output& device : volume_.devices()) {
        for (float level : device.levels(hal_)) {
            loudest = std::max(loudest, level);
        }
    }
    return loudest;
}

void MediaKeyHandler::handleMediaKey(int key, bool fine, bool repeated) {
    lastMediaKey_ = keyName(key);
    const float step = mediaKeyStep(fine);
    if (key == kMute) {
        // A held mute key toggles once; its repeats only show the display again.
        if (!repeated) {
            volume_.toggleMute();
        }
        refresh_();
    } else if (key != kSoundUp && key != kSoundDown) {
        brightness_.adjustBrightness(key == kBrightnessUp ? step : -step);
        refresh_();
        osd_.show(std::nullopt, false);
        return;
    } else {
        // While muted the level to move from is the one that unmuting would bring back.
        float current = 0.0f;
        const SavedLevels saved = volume_.saved();
        if (saved.empty()) {
            current = loudestLevel();
        } else {
            for (const auto& [uid, levels] : saved) {
                for (float level : levels) {
                    current = std::max(current, level);
                }
            }
        }
        volume_.applyVolume(clampLevel(key == kSoundUp ? current + step : current - step));
        refresh_();
    }
    osd_.show(loudestLevel(), volume_.muted());
}

}  // namespace vantle
