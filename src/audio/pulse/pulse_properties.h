#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "audio/audio_hal.h"
#include "audio/pulse/pulse_snapshot.h"

namespace vantle::pulse {

// Failures use the four-character codes of the macOS hardware layer, so that a log reads the same
// on both platforms.
inline constexpr AudioHal::Status kStatusNotRunning = static_cast<AudioHal::Status>(fourCharCode("stop"));
inline constexpr AudioHal::Status kStatusBadObject = static_cast<AudioHal::Status>(fourCharCode("!obj"));
inline constexpr AudioHal::Status kStatusUnknownProperty = static_cast<AudioHal::Status>(fourCharCode("who?"));
inline constexpr AudioHal::Status kStatusBadSize = static_cast<AudioHal::Status>(fourCharCode("!siz"));
inline constexpr AudioHal::Status kStatusNotSettable = static_cast<AudioHal::Status>(fourCharCode("nope"));
inline constexpr AudioHal::Status kStatusUnspecified = static_cast<AudioHal::Status>(fourCharCode("what"));

// A property's value as the bytes a caller receives.
struct PropertyValue {
    std::vector<std::byte> bytes;
    // The smallest part a read may return: one id of a list, one byte of text, or the whole of a
    // scalar, which cannot be read in part.
    std::size_t readUnit = 1;
    bool settable = false;
};

// Answers a property of the system object or a device from one reading of the server.
AudioHal::Status readProperty(const PulseSnapshot& snapshot, std::uint32_t object, const PropertyAddress& address,
                              PropertyValue& value);

// Whether a reading of the default sink alone answers the property as the whole reading would:
// the default output, and every property of the default sink itself except the members of a
// combined sink, which are found through the streams.
bool answeredByDefaultSink(const PulseSnapshot& snapshot, std::uint32_t object, const PropertyAddress& address);

// The sink's channel volumes after writing level (0..1, clamped) to a volume element: element 0
// scales every channel so that the balance stays, element n sets channel n alone. A silent sink
// has no balance of its own; balanceWhenSilent, the channel volumes it had before it fell
// silent, gives it back (all channels equal without one). Empty when the element does not exist
// or the level is not a number.
std::optional<std::vector<std::uint32_t>> volumesAfterWrite(const PulseSink& sink, std::uint32_t element,
                                                            float level,
                                                            const std::vector<std::uint32_t>& balanceWhenSilent = {});

// PulseAudio's volumes are linear factors with 65536 as 100 %, the same scale as our levels.
std::uint32_t volumeFromLevel(float level);
float levelFromVolume(std::uint32_t volume);

}  // namespace vantle::pulse
