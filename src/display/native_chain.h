#pragma once

#include <vector>

#include "display/native_brightness.h"
#include "display/native_display_control.h"

namespace vantle {

// The native getter and setter over several controls, asked in order: the first control that
// can read a display answers for it and takes its writes. The controls must outlive the result.
NativeBrightnessFunctions chainNativeControls(std::vector<NativeDisplayControl*> controls);

}  // namespace vantle
