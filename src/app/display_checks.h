#pragma once

#include <string>
#include <vector>

#include "app/audio_checks.h"
#include "display/brightness.h"
#include "services/user_defaults.h"

namespace vantle {

// One "DISPLAY" line per listed display, with its level as "Optional(0.75)" or "nil".
std::vector<std::string> diagnoseDisplayLines(Brightness& brightness);

// Writes every display's current level back and checks that it reads back within 0.01: one
// "BRIGHTNESS" line per display that has a level to test. A display without any readable level
// prints no line but fails the check.
RoundTripResult verifyBrightnessRoundTrip(Brightness& brightness, const UserDefaults& defaults);

}  // namespace vantle
