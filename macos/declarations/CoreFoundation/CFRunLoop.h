// Run loops and their sources, as far as our files attach a source to the main run loop.
#pragma once

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef CFStringRef CFRunLoopMode;

// The pseudo-mode that stands for every mode marked common, so that a source keeps firing
// while a menu is tracked or a window is resized.
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFRunLoopRef CFRunLoopGetMain(void);
void CFRunLoopAddSource(CFRunLoopRef rl, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef rl, CFRunLoopSourceRef source, CFRunLoopMode mode);

#ifdef __cplusplus
}
#endif
