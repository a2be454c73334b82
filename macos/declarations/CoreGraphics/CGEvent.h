// Event taps and the fields of the events they see.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFMachPort.h>
#include <CoreGraphics/CGEventTypes.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

// A new, enabled tap, or NULL when the process may not tap there. The caller releases the port.
CFMachPortRef CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place, CGEventTapOptions options,
                               CGEventMask eventsOfInterest, CGEventTapCallBack callback, void* userInfo);
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);

CGEventFlags CGEventGetFlags(CGEventRef event);
int64_t CGEventGetIntegerValueField(CGEventRef event, CGEventField field);

#ifdef __cplusplus
}
#endif
