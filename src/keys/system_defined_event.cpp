#include "keys/system_defined_event.h"

namespace vantle {
namespace {

// The subtype of system-defined events that carry the auxiliary control buttons.
constexpr int kAuxiliaryControlButtonsSubtype = 8;
// The key state in bits 8 to 15 of the data word when the key goes down; 0x0B is up.
constexpr std::int64_t kKeyStateDown = 0x0A;

constexpr std::uint64_t kShiftFlag = 0x20000;
constexpr std::uint64_t kOptionFlag = 0x80000;

constexpr std::int64_t kBrightnessUpKeyCode = 144;
constexpr std::int64_t kBrightnessDownKeyCode = 145;

bool isMediaKey(std::int64_t key) {
    return key == kSoundUp || key == kSoundDown || key == kBrightnessUp || key == kBrightnessDown || key == kMute;
}

MediaKeyEvent ourKey(int key, bool down, bool repeated, std::uint64_t modifierFlags) {
    return MediaKeyEvent{.key = key, .pressed = down, .repeated = repeated, .fine = isFineStepFlags(modifierFlags)};
}

}  // namespace

bool isFineStepFlags(std::uint64_t modifierFlags) {
    return (modifierFlags & kShiftFlag) != 0 && (modifierFlags & kOptionFlag) != 0;
}

std::optional<MediaKeyEvent> decodeSystemDefinedEvent(int subtype, std::int64_t data1, std::uint64_t modifierFlags) {
    if (subtype != kAuxiliaryControlButtonsSubtype) {
        return std::nullopt;
    }
    // The key is the upper half of the low 32 bits; whatever lies above them is not part of it.
    const std::int64_t key = (data1 & 0xFFFF0000) >> 16;
    if (!isMediaKey(key)) {
        return std::nullopt;
    }
    const std::int64_t state = (data1 & 0xFF00) >> 8;
    const bool repeated = (data1 & 1) != 0;
    return ourKey(static_cast<int>(key), state == kKeyStateDown, repeated, modifierFlags);
}

std::optional<MediaKeyEvent> decodeKeyCodeEvent(bool keyDown, std::int64_t keyCode, bool autorepeat,
                                                std::uint64_t modifierFlags) {
    switch (keyCode) {
    case kBrightnessUpKeyCode: return ourKey(kBrightnessUp, keyDown, autorepeat, modifierFlags);
    case kBrightnessDownKeyCode: return ourKey(kBrightnessDown, keyDown, autorepeat, modifierFlags);
    default: return std::nullopt;
    }
}

}  // namespace vantle
