#include "keys/key_tap_mac.h"

#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

#include <optional>

#include "keys/system_defined_event.h"

namespace vantle {

struct MacKeyTapCallback {
    static CGEventRef onEvent(CGEventTapProxy proxy, CGEventType type, CGEventRef event, void* userInfo);
};

namespace {

// Key down and up carry the brightness keys of some keyboards as plain key codes; every
// media key comes as a system-defined event.
constexpr CGEventMask kTappedEvents = CGEventMaskBit(kCGEventKeyDown) | CGEventMaskBit(kCGEventKeyUp) |
                                      CGEventMaskBit(NSEventTypeSystemDefined);

// The tap at the point where hardware events enter the window server sees the keys before
// anything else; only some processes may tap there, so the login session is the fallback.
CFMachPortRef createTap(void* userInfo) {
    for (CGEventTapLocation location : {kCGHIDEventTap, kCGSessionEventTap}) {
        if (CFMachPortRef tap = CGEventTapCreate(location, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
                                                 kTappedEvents, &MacKeyTapCallback::onEvent, userInfo)) {
            return tap;
        }
    }
    return nullptr;
}

std::optional<MediaKeyEvent> decode(CGEventType type, CGEventRef event) {
    const CGEventFlags flags = CGEventGetFlags(event);
    if (type == kCGEventKeyDown || type == kCGEventKeyUp) {
        return decodeKeyCodeEvent(type == kCGEventKeyDown, CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode),
                                  CGEventGetIntegerValueField(event, kCGKeyboardEventAutorepeat) != 0, flags);
    }
    // Only the object form of a system-defined event tells its subtype and data word.
    @autoreleasepool {
        NSEvent* object = [NSEvent eventWithCGEvent:event];
        if (object == nil || object.type != NSEventTypeSystemDefined) {
            return std::nullopt;
        }
        return decodeSystemDefinedEvent(object.subtype, object.data1, flags);
    }
}

}  // namespace

CGEventRef MacKeyTapCallback::onEvent(CGEventTapProxy, CGEventType type, CGEventRef event, void* userInfo) {
    auto* self = static_cast<MacKeyTap*>(userInfo);
    if (self == nullptr) {
        return event;
    }
    if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) {
        // The system switches a tap off when a callback was slow or the user asked; while the
        // permission still holds we take the keys straight back.
        if (self->tap_ != nullptr && AXIsProcessTrusted()) {
            CGEventTapEnable(self->tap_, true);
        }
        return event;
    }
    const std::optional<MediaKeyEvent> key = decode(type, event);
    if (!key) {
        return event;
    }
    // The receiver only queues the work, so the keyboard is never held up by a device or display.
    if (self->onKey_) {
        self->onKey_(*key);
    }
    // Returning NULL prevents the event from reaching other applications.
    return nullptr;
}

MacKeyTap::~MacKeyTap() {
    stop();
}

bool MacKeyTap::start(std::function<void(const MediaKeyEvent&)> onKey) {
    if (tap_ != nullptr) {
        // A tap the system switched off is enabled again rather than made anew; one that stays
        // off is given up.
        CGEventTapEnable(tap_, true);
        if (CGEventTapIsEnabled(tap_)) {
            onKey_ = std::move(onKey);
            return true;
        }
        stop();
        return false;
    }
    CFMachPortRef tap = createTap(this);
    if (tap == nullptr) {
        return false;
    }
    CFRunLoopSourceRef source = CFMachPortCreateRunLoopSource(kCFAllocatorDefault, tap, 0);
    if (source == nullptr) {
        CFMachPortInvalidate(tap);
        CFRelease(tap);
        return false;
    }
    tap_ = tap;
    source_ = source;
    onKey_ = std::move(onKey);
    // The common modes keep the keys working while a menu is open or a window is dragged.
    CFRunLoopAddSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
    CGEventTapEnable(tap_, true);
    return true;
}

void MacKeyTap::stop() {
    if (source_ != nullptr) {
        CFRunLoopRemoveSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
        CFRelease(source_);
        source_ = nullptr;
    }
    if (tap_ != nullptr) {
        // Invalidating the port ends the tap; it need not be disabled first.
        CFMachPortInvalidate(tap_);
        CFRelease(tap_);
        tap_ = nullptr;
    }
    onKey_ = nullptr;
}

bool MacKeyTap::running() const {
    return tap_ != nullptr && CGEventTapIsEnabled(tap_);
}

}  // namespace vantle
