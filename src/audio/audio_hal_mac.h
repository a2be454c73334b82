#pragma once

#include <cstdint>

#include "audio/audio_hal.h"

namespace vantle {

// The sound hardware layer of macOS itself. AudioHal is modelled on it, so every call goes
// straight to the matching hardware call with the same object id and address triple, and its
// status comes back unchanged.
//
// The one translation is text: the hardware hands out names and unique ids ("lnam", "uid ") as
// string references, which this class turns into UTF-8 bytes without a terminator, as AudioHal
// promises; their size is the byte count.
//
// Snapshot scopes keep the interface's default (no effect): the hardware layer answers in the
// process, so there are no round trips to save. Main thread only, like the interface.
class CoreAudioHal final : public AudioHal {
public:
    Status dataSize(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size) override;
    Status getData(std::uint32_t object, const PropertyAddress& address, std::uint32_t& size,
                   void* data) override;
    Status setData(std::uint32_t object, const PropertyAddress& address, std::uint32_t size,
                   const void* data) override;
    bool hasProperty(std::uint32_t object, const PropertyAddress& address) override;
    Status isSettable(std::uint32_t object, const PropertyAddress& address, bool& settable) override;
};

}  // namespace vantle
