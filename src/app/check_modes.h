#pragma once

#include "audio/audio_hal.h"
#include "display/brightness.h"
#include "services/user_defaults.h"

namespace vantle {

// The check modes other than the localization check. Each prints its result lines on standard
// output and returns the process's exit status.

// Lists the audio outputs, the default output and the displays with their levels.
int runDiagnose(AudioHal& audio, Brightness& brightness);

// Writes back the current volume of the test speakers and the brightness of every display,
// and checks that each reads back unchanged.
int runVerifyControls(AudioHal& audio, Brightness& brightness, const UserDefaults& defaults);

class Platform;

// Shows the on-screen display and checks its panels' look, placement and dismissal.
int runVerifyOsd(Platform& platform);

}  // namespace vantle
