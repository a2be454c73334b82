#pragma once

namespace vantle {

// The check modes other than the localization check. Each prints its result lines on standard
// output and returns the process's exit status.

// Lists the audio outputs, the default output and the displays with their levels.
int runDiagnose();

// Writes back the current volume of the test speakers and the brightness of every display,
// and checks that each reads back unchanged.
int runVerifyControls();

// Shows the on-screen display and checks its panels' look, placement and dismissal.
int runVerifyOsd();

}  // namespace vantle
