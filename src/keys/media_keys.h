#pragma once

#include <functional>
#include <string>

#include "audio/volume_control.h"
#include "display/brightness_control.h"
#include "keys/osd.h"

namespace vantle {

// The media keys' numbers: sound up and down, brightness up and down, mute.
enum MediaKey : int { kSoundUp = 0, kSoundDown = 1, kBrightnessUp = 2, kBrightnessDown = 3, kMute = 7 };

// One key event as the key tap decoded it.
struct MediaKeyEvent {
    int key = kSoundUp;
    bool pressed = true;   // a release is swallowed and does nothing
    bool repeated = false; // held down: the keyboard repeats the press
    bool fine = false;     // Shift and Alt held: the small step
    bool operator==(const MediaKeyEvent&) const = default;
};

// Acts on handled key presses: a volume, mute or brightness change, the control refresh and the
// on-screen display. Main thread only; the key tap queues presses here and returns at once.
class MediaKeyHandler {
public:
    MediaKeyHandler(AudioHal& hal, VolumeControl& volume, BrightnessControl& brightness, OSD& osd,
                    std::function<void()> refresh)
        : hal_(hal), volume_(volume), brightness_(brightness), osd_(osd), refresh_(std::move(refresh)) {}

    void handleMediaKey(int key, bool fine, bool repeated);

    // The name of the last key handled, for the settings window; empty before the first.
    const std::string& lastMediaKey() const { return lastMediaKey_; }

private:
    // The loudest element of the current output's devices, 0 when none can be read.
    float loudestLevel();

    AudioHal& hal_;
    VolumeControl& volume_;
    BrightnessControl& brightness_;
    OSD& osd_;
    std::function<void()> refresh_;
    std::string lastMediaKey_;
};

// The step of one key press: a sixteenth, one segment of the on-screen bar, or 1 % when fine.
inline float mediaKeyStep(bool fine) {
    return fine ? 0.01f : 0.0625f;
}

}  // namespace vantle
