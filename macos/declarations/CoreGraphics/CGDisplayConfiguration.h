// Being told of changes to the display configuration. Stands for
// <CoreGraphics/CGDisplayConfiguration.h>.
#pragma once

#include <CoreGraphics/CGDirectDisplay.h>
#include <CoreGraphics/CGError.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t CGDisplayChangeSummaryFlags;
enum : CGDisplayChangeSummaryFlags {
    // Set on the call made before a change; every other flag describes a change made.
    kCGDisplayBeginConfigurationFlag = 1u << 0,
    kCGDisplayMovedFlag = 1u << 1,
    kCGDisplaySetMainFlag = 1u << 2,
    kCGDisplaySetModeFlag = 1u << 3,
    kCGDisplayAddFlag = 1u << 4,
    kCGDisplayRemoveFlag = 1u << 5,
    kCGDisplayEnabledFlag = 1u << 8,
    kCGDisplayDisabledFlag = 1u << 9,
    kCGDisplayMirrorFlag = 1u << 10,
    kCGDisplayUnMirrorFlag = 1u << 11,
    kCGDisplayDesktopShapeChangedFlag = 1u << 12,
};

// Called once per display before a change and once per added, removed or online display
// after it, on the thread that runs the application's event loop.
typedef void (*CGDisplayReconfigurationCallBack)(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags,
                                                 void* userInfo);

CGError CGDisplayRegisterReconfigurationCallback(CGDisplayReconfigurationCallBack callback, void* userInfo);
// Both arguments must be those given at registration.
CGError CGDisplayRemoveReconfigurationCallback(CGDisplayReconfigurationCallBack callback, void* userInfo);

#ifdef __cplusplus
}
#endif
