// Core Graphics' floating-point type. Stands for <CoreGraphics/CGBase.h>.
#pragma once

// CGFloat is a double in every 64-bit process.
typedef double CGFloat;
