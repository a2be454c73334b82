// The result codes of Core Graphics calls, as far as our files test them. Stands for
// <CoreGraphics/CGError.h>.
#pragma once

#include <stdint.h>

typedef int32_t CGError;

enum : CGError {
    kCGErrorSuccess = 0,
};
