#pragma once

#include <cstdint>
#include <optional>

namespace vantle {

// The media key (a MediaKey number) of an X11 key symbol; others are not ours.
std::optional<int> mediaKeyOfKeysym(std::uint32_t keysym);

// Shift and Alt (Mod1) both held in an X11 modifier state; other modifiers do not matter.
bool isFineStep(std::uint16_t modifierState);

}  // namespace vantle
