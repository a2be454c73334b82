#pragma once

#include <cstdint>
#include <optional>

#include "keys/media_keys.h"

namespace vantle {

// The macOS keyboard tap sees the media keys in two forms: as system-defined events of the
// auxiliary control buttons (every media key), and as ordinary key events with their own key
// codes (the brightness keys of some keyboards). This file turns both into our key events,
// without any Apple type, so that the tap's callback only reads fields and hands them here.

// Each decoder answers nothing for an event that is not ours, which the tap passes on. One of
// our keys in any state other than down is a release: the tap swallows it and nothing is done,
// so that the system never sees half of a key we act on.

// Shift and Option both held in an event's modifier flags; other modifiers do not matter.
bool isFineStepFlags(std::uint64_t modifierFlags);

// A system-defined event: its subtype, its first data word and its modifier flags. Only the
// auxiliary control buttons (subtype 8) of our five keys are ours; everything else passes on.
std::optional<MediaKeyEvent> decodeSystemDefinedEvent(int subtype, std::int64_t data1, std::uint64_t modifierFlags);

// A key-down or key-up event with its key code and autorepeat field. Only the brightness keys'
// codes 144 and 145 are ours.
std::optional<MediaKeyEvent> decodeKeyCodeEvent(bool keyDown, std::int64_t keyCode, bool autorepeat,
                                                std::uint64_t modifierFlags);

}  // namespace vantle
