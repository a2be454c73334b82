#pragma once

#include "audio/audio_hal.h"
#include "audio/volume_control.h"
#include "display/brightness.h"
#include "ui/control_refresh.h"

namespace vantle {

// The current output's leaf devices with their element counts and the levels that can be read
// now, and whether the program holds muted levels. Read afresh at every call.
RefreshFacts::Audio readAudioFacts(VolumeControl& volume, AudioHal& hal);

// The displays the backend lists, each read twice (the level to show and the native level), and
// the same readings for the displays that controls still name although they are listed no more.
// Read afresh at every call.
RefreshFacts::Displays readDisplayFacts(Brightness& brightness, const RefreshFacts::Controls& controls);

// Fills the hardware part of facts (audio and displays); facts.controls must already say which
// display controls exist.
void gatherHardwareFacts(RefreshFacts& facts, VolumeControl& volume, AudioHal& hal, Brightness& brightness);

}  // namespace vantle
