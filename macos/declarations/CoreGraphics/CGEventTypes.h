// The types of low-level input events and of the event taps that filter them.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventTapProxy* CGEventTapProxy;

enum CGEventType : uint32_t {
    kCGEventNull = 0,
    kCGEventKeyDown = 10,
    kCGEventKeyUp = 11,
    // Sent to a tap's callback, not through the tap: the system switched the tap off because
    // the callback was too slow, or because the user asked for it.
    kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
    kCGEventTapDisabledByUserInput = 0xFFFFFFFF,
};
typedef enum CGEventType CGEventType;

// One bit per event type, as CGEventMaskBit makes it.
typedef uint64_t CGEventMask;
#define CGEventMaskBit(eventType) ((CGEventMask)1 << (eventType))

// The modifier keys held with an event, as bits.
typedef uint64_t CGEventFlags;
enum : CGEventFlags {
    kCGEventFlagMaskShift = 0x00020000,
    kCGEventFlagMaskAlternate = 0x00080000,
};

enum CGEventField : uint32_t {
    kCGKeyboardEventAutorepeat = 8,
    kCGKeyboardEventKeycode = 9,
};
typedef enum CGEventField CGEventField;

enum CGEventTapLocation : uint32_t {
    kCGHIDEventTap = 0,
    kCGSessionEventTap = 1,
    kCGAnnotatedSessionEventTap = 2,
};
typedef enum CGEventTapLocation CGEventTapLocation;

enum CGEventTapPlacement : uint32_t {
    kCGHeadInsertEventTap = 0,
    kCGTailAppendEventTap = 1,
};
typedef enum CGEventTapPlacement CGEventTapPlacement;

enum CGEventTapOptions : uint32_t {
    kCGEventTapOptionDefault = 0,
    kCGEventTapOptionListenOnly = 1,
};
typedef enum CGEventTapOptions CGEventTapOptions;

// Returns the event to pass it on (changed or not), another event in its place, or NULL to
// take it away from every later tap and application.
typedef CGEventRef (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* userInfo);

#ifdef __cplusplus
}
#endif
