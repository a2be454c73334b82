#include "keys/media_keys_x11.h"

#include "keys/media_keys.h"

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

}  // namespace vantle
