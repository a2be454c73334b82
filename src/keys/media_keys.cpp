#include "keys/media_keys.h"

#include <algorithm>

#include "localization/localization.h"
#include "services/levels.h"

namespace vantle {
namespace {

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
    if (key != kMute && key != kSoundUp && key != kSoundDown) {
        brightness_.adjustBrightness(key == kBrightnessUp ? step : -step);
        refresh_();
        osd_.show(std::nullopt, false);
        return;
    }
    // One reading of the sound hardware serves the whole press: the level to move from, the
    // change, the controls' refresh and the display, which see the change as written. A press
    // then costs one wait for the reading and one for the writes. The reading starts from the
    // default output, which is all that a step or a mute asks about before writing; an unmute
    // restores every remembered device, so it reads them all from the start.
    const bool unmuting = key == kMute && !repeated && volume_.muted();
    AudioSnapshotScope snapshot(hal_, unmuting ? AudioSnapshotScope::Start::everything
                                               : AudioSnapshotScope::Start::defaultOutput);
    if (key == kMute) {
        // A held mute key toggles once; its repeats only show the display again.
        if (!repeated) {
            volume_.toggleMute();
        }
        refresh_();
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
