#pragma once

#include <string>
#include <vector>

#include "audio/audio_hal.h"

namespace vantle {

// The "AUDIO" line of every output, then the "DEFAULT" line when the default output can be read.
std::vector<std::string> diagnoseAudioLines(AudioHal& hal);

struct RoundTripResult {
    std::vector<std::string> lines;
    bool passed = true;
};

// For every output whose name contains "Studio Display" (ignoring case), writes its current
// levels back and checks that they read back unchanged: one "VOLUME" line per output.
RoundTripResult verifyVolumeRoundTrip(AudioHal& hal);

// "[a, b]", the bracketed list form of the check modes.
std::string bracketedList(const std::vector<std::string>& items);

}  // namespace vantle
