// The umbrella header: every Core Audio part that has a declarations file here.
#pragma once

#if __has_include(<CoreAudio/AudioHardware.h>)
#include <CoreAudio/AudioHardware.h>
#endif
