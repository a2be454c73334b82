#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "audio/audio_hal.h"
#include "audio/output.h"
#include "services/message_line.h"
#include "services/muted_levels.h"
#include "services/user_defaults.h"

namespace vantle {

// Volume and mute of the current output, carried out on its leaf devices as one transaction.
//
// Mute does not use the hardware's mute switch: it sets every leaf to 0 and remembers each
// leaf's levels in the settings ("mutedLevels"), before anything is written, so that they can
// be put back later, even after a crash and a restart. Being muted is that memory being
// non-empty. Nothing read from the hardware is cached: every command reads the devices afresh.
class VolumeControl {
public:
    VolumeControl(AudioHal& hal, UserDefaults& defaults, MessageLine& messages, std::function<void()> refresh)
        : hal_(hal), defaults_(defaults), messages_(messages), refresh_(std::move(refresh)) {}

    // The device's active sub-devices; empty for a plain device or when the read fails.
    std::vector<std::uint32_t> members(std::uint32_t device);
    // The outputs with at least one active sub-device, in the hardware's order.
    std::vector<Output> aggregates();
    // The leaf devices of the default output, in the hardware's order; empty unless every
    // leaf is an output device.
    std::vector<Output> devices();

    // Sets every leaf to level; on the first failing device, sets them all back.
    void applyVolume(float level);
    // The slider actions: value from 0 to 100.
    void setVolume(double sliderValue);
    void quickVolumeChanged(double sliderValue);
    // Mutes when not muted, else unmutes.
    void toggleMute();
    // Restores every remembered device that is present and accepts its levels.
    void unmute();
    // The same when muted; otherwise touches no device and shows nothing. Before an update
    // replaces the program, so that the user's devices are not left silent.
    void unmuteIfMuted();
    bool muted() const;

    // The remembered levels, read from and written to the settings at every use.
    SavedLevels saved() const;
    void setSaved(const SavedLevels& levels);

private:
    // The devices when each has elements and every element reads; else empty.
    std::vector<Output> readableDevices();
    void show(const std::string& text);

    AudioHal& hal_;
    UserDefaults& defaults_;
    MessageLine& messages_;
    std::function<void()> refresh_;
};

}  // namespace vantle
