// Mach ports wrapped as Core Foundation objects: what an event tap is handed back as.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFRunLoop.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CFMachPort* CFMachPortRef;

// A new source for the port; the caller releases it.
CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef port);

#ifdef __cplusplus
}
#endif
