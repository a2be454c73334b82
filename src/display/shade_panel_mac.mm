#include "display/shade_panel_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include <optional>

#include "display/desktop_coordinates.h"

namespace vantle {

struct MacShadePanel::Window {
    NSPanel* panel = nil;
};

namespace {

// Above the windows of applications; the menu bar, the Dock and menus stay above it, so that
// they stay readable on a display dimmed to its darkest.
const NSWindowLevel kShadeLevel = NSFloatingWindowLevel;

// On every Space, left in place by Mission Control, and beside a full-screen window too.
constexpr NSWindowCollectionBehavior kShadeBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                                                      NSWindowCollectionBehaviorStationary |
                                                      NSWindowCollectionBehaviorFullScreenAuxiliary;

// The frame in AppKit's coordinates, which count up from the bottom of the first screen.
NSRect appKitRect(const ScreenFrame& frame) {
    int primaryHeight = 0;
    if (NSScreen* first = NSScreen.screens.firstObject) {
        const std::optional<ScreenFrame> primary = roundedFrame(0, 0, first.frame.size.width, first.frame.size.height);
        primaryHeight = primary ? primary->height : 0;
    }
    const ScreenFrame flipped = flippedVertically(frame, primaryHeight);
    return NSMakeRect(flipped.x, flipped.y, flipped.width, flipped.height);
}

}  // namespace

MacShadePanel::MacShadePanel(const ScreenFrame& frame) : window_(std::make_unique<Window>()) {
    @autoreleasepool {
        // A panel of the non-activating kind and nothing else: no title bar, no border, and
        // clicking it (were clicks not passed through) would not bring the program forward.
        window_->panel = [[NSPanel alloc] initWithContentRect:appKitRect(frame)
                                                    styleMask:NSWindowStyleMaskNonactivatingPanel
                                                      backing:NSBackingStoreBuffered
                                                        defer:NO];
        // The panel belongs to this object; closing must not free it a second time.
        window_->panel.releasedWhenClosed = NO;
    }
}

MacShadePanel::~MacShadePanel() {
    @autoreleasepool {
        [window_->panel orderOut:nil];
        window_->panel = nil;
    }
}

void MacShadePanel::setUp(const ScreenFrame& frame) {
    @autoreleasepool {
        NSPanel* panel = window_->panel;
        // Every property again each time, so that a reused panel follows a screen that moved
        // or changed its resolution.
        [panel setFrame:appKitRect(frame) display:YES];
        panel.backgroundColor = NSColor.blackColor;
        panel.opaque = NO;
        // Clicks and scrolling go to whatever lies under the shade.
        panel.ignoresMouseEvents = YES;
        panel.hasShadow = NO;
        panel.level = kShadeLevel;
        panel.collectionBehavior = kShadeBehavior;
    }
}

void MacShadePanel::setAlpha(double alpha) {
    window_->panel.alphaValue = alpha;
}

void MacShadePanel::orderOut() {
    [window_->panel orderOut:nil];
}

void MacShadePanel::orderFrontRegardless() {
    // The program is an accessory and is rarely the active application: a plain ordering to
    // the front would leave the shade behind the active application's windows.
    [window_->panel orderFrontRegardless];
}

std::unique_ptr<ShadePanel> MacShadeFactory::makePanel(std::uint32_t, const ScreenFrame& frame) {
    return std::make_unique<MacShadePanel>(frame);
}

}  // namespace vantle
