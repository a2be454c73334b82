#pragma once

#include <optional>

#include "display/screen_system.h"

namespace vantle {

// The program places windows in the desktop's coordinates: points, origin at the top-left
// corner of the main screen, y growing downwards (as the toolkit and Core Graphics count).
// AppKit counts from the bottom-left corner of the first screen with y growing upwards. These
// are the pure steps between the two.

// The frame with whole-point edges nearest to a rectangle given in fractional points. The edges
// are rounded rather than the size, so that two screens that touch still touch. Empty when a
// number is not finite or an edge lies outside the range of int.
std::optional<ScreenFrame> roundedFrame(double x, double y, double width, double height);

// The same rectangle counted from the other vertical end of the first screen, whose height is
// primaryHeight. The step is its own inverse: it turns desktop frames into AppKit frames and
// AppKit frames back into desktop frames.
ScreenFrame flippedVertically(const ScreenFrame& frame, int primaryHeight);

}  // namespace vantle
