// Displays as the window server numbers them: their list, place and state. Stands for
// <CoreGraphics/CGDirectDisplay.h>.
#pragma once

#include <CoreGraphics/CGError.h>
#include <CoreGraphics/CGGeometry.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t CGDirectDisplayID;
typedef uint32_t CGDisplayCount;
// Core Graphics' C truth value: non-zero is true.
typedef uint32_t boolean_t;

// Online means active, mirrored or asleep. With a null list, displayCount receives how many
// there are.
CGError CGGetOnlineDisplayList(uint32_t maxDisplays, CGDirectDisplayID* onlineDisplays, uint32_t* displayCount);

// The display's rectangle in the global display space, in points, whose origin is the
// upper-left corner of the main display and whose y axis points down.
CGRect CGDisplayBounds(CGDirectDisplayID display);

// Whether the display is drawable: false for a sleeping display and for a mirror of another.
boolean_t CGDisplayIsActive(CGDirectDisplayID display);

#ifdef __cplusplus
}
#endif
