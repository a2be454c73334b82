#pragma once

// Short forms of the reads and writes the tests make through the hardware interface.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/audio_hal.h"

namespace vantle::testing {

// Every device id, empty when the list cannot be read.
std::vector<std::uint32_t> deviceIds(AudioHal& hal);
std::vector<std::uint32_t> idList(AudioHal& hal, std::uint32_t object, std::uint32_t selector,
                                  std::uint32_t scope = audio::kScopeGlobal);
std::optional<std::string> text(AudioHal& hal, std::uint32_t object, std::uint32_t selector);
std::optional<std::uint32_t> defaultOutput(AudioHal& hal);
std::optional<std::uint32_t> streamBytes(AudioHal& hal, std::uint32_t device);
std::optional<float> volume(AudioHal& hal, std::uint32_t device, std::uint32_t element);
bool setVolume(AudioHal& hal, std::uint32_t device, std::uint32_t element, float level);

// The device whose unique id (the sink or source name) is uid.
std::optional<std::uint32_t> deviceWithUid(AudioHal& hal, const std::string& uid);
// The same for a device the test expects: the test fails when it is absent, and 0 stands in.
std::uint32_t presentDeviceWithUid(AudioHal& hal, const std::string& uid);

}  // namespace vantle::testing
