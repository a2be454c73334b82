#include "display/screens_mac.h"

#import <AppKit/AppKit.h>
#include <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "display/desktop_coordinates.h"

namespace vantle {

struct MacScreenSystemCallback {
    static void onReconfiguration(CGDirectDisplayID display, CGDisplayChangeSummaryFlags flags, void* userInfo);
};

namespace {

NSString* const kScreenNumberKey = @"NSScreenNumber";

std::optional<std::int64_t> screenNumber(NSScreen* screen) {
    id value = screen.deviceDescription[kScreenNumberKey];
    if (value == nil || ![value isKindOfClass:[NSNumber class]]) {
        return std::nullopt;
    }
    // Kept wide: the caller refuses a number outside the range of display ids.
    return static_cast<NSNumber*>(value).longLongValue;
}

std::string utf8(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes != nullptr ? std::string(bytes) : std::string();
}

// An AppKit rectangle (y up from the bottom of the first screen) in the desktop's coordinates.
std::optional<ScreenFrame> desktopFrame(NSRect rect, int primaryHeight) {
    const std::optional<ScreenFrame> rounded =
        roundedFrame(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    if (!rounded) {
        return std::nullopt;
    }
    return flippedVertically(*rounded, primaryHeight);
}

}  // namespace

void MacScreenSystemCallback::onReconfiguration(CGDirectDisplayID, CGDisplayChangeSummaryFlags flags, void* userInfo) {
    // The call made before a change describes a configuration that is about to go away.
    if ((flags & kCGDisplayBeginConfigurationFlag) != 0) {
        return;
    }
    auto* self = static_cast<MacScreenSystem*>(userInfo);
    if (self != nullptr && self->changed_) {
        self->changed_();
    }
}

MacScreenSystem::MacScreenSystem(std::function<void()> changed) : changed_(std::move(changed)) {
    if (changed_) {
        watching_ = CGDisplayRegisterReconfigurationCallback(&MacScreenSystemCallback::onReconfiguration, this) ==
                    kCGErrorSuccess;
    }
}

MacScreenSystem::~MacScreenSystem() {
    if (watching_) {
        CGDisplayRemoveReconfigurationCallback(&MacScreenSystemCallback::onReconfiguration, this);
    }
}

std::vector<SystemScreen> MacScreenSystem::screens() {
    std::vector<SystemScreen> listed;
    @autoreleasepool {
        NSArray<NSScreen*>* all = NSScreen.screens;
        NSScreen* first = all.firstObject;
        if (first == nil) {
            return listed;
        }
        // The first screen's height is where AppKit's y axis and the desktop's meet.
        const std::optional<ScreenFrame> primary =
            roundedFrame(0, 0, first.frame.size.width, first.frame.size.height);
        const int primaryHeight = primary ? primary->height : 0;
        for (NSScreen* screen in all) {
            SystemScreen entry;
            entry.number = screenNumber(screen);
            entry.name = utf8(screen.localizedName);
            // Core Graphics already counts in the desktop's coordinates; AppKit's frame is the
            // same rectangle turned over, for a screen without a number.
            std::optional<ScreenFrame> frame;
            if (entry.number && *entry.number >= 0 && *entry.number <= UINT32_MAX) {
                const CGRect bounds = CGDisplayBounds(static_cast<CGDirectDisplayID>(*entry.number));
                frame = roundedFrame(bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height);
            }
            if (!frame) {
                frame = desktopFrame(screen.frame, primaryHeight);
            }
            entry.frame = frame.value_or(ScreenFrame{});
            entry.visibleFrame = desktopFrame(screen.visibleFrame, primaryHeight);
            listed.push_back(std::move(entry));
        }
    }
    return listed;
}

bool MacScreenSystem::isActive(std::uint32_t display) {
    return CGDisplayIsActive(display) != 0;
}

std::vector<DisplayIdentity> MacScreenSystem::identities() {
    // Asked twice: first how many there are, then for that many. A display that came online
    // in between is left for the next change, which this system is told of.
    uint32_t count = 0;
    if (CGGetOnlineDisplayList(0, nullptr, &count) != kCGErrorSuccess || count == 0) {
        return {};
    }
    std::vector<CGDirectDisplayID> displays(count);
    if (CGGetOnlineDisplayList(count, displays.data(), &count) != kCGErrorSuccess) {
        return {};
    }
    displays.resize(std::min<std::size_t>(count, displays.size()));
    std::vector<DisplayIdentity> identities;
    identities.reserve(displays.size());
    for (CGDirectDisplayID display : displays) {
        identities.push_back(DisplayIdentity{display, {}, {}});
    }
    return identities;
}

}  // namespace vantle
