#include "ui/status_item_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include "display/desktop_coordinates.h"

// The button's target: tells a plain click from a context click. Holds copies of the callbacks,
// so it never reaches back into the C++ object that made it.
@interface VantleStatusItemTarget : NSObject
- (instancetype)initWithClicked:(std::function<void()>)clicked contextClicked:(std::function<void()>)contextClicked;
- (void)buttonPressed:(id)sender;
@end

@implementation VantleStatusItemTarget {
    std::function<void()> clicked_;
    std::function<void()> contextClicked_;
}

- (instancetype)initWithClicked:(std::function<void()>)clicked contextClicked:(std::function<void()>)contextClicked {
    self = [super init];
    if (self != nil) {
        clicked_ = std::move(clicked);
        contextClicked_ = std::move(contextClicked);
    }
    return self;
}

- (void)buttonPressed:(id)sender {
    (void)sender;
    NSEvent* event = NSApplication.sharedApplication.currentEvent;
    // Control with a click is the one-button mouse's right click.
    const bool context = event != nil && (event.type == NSEventTypeRightMouseUp ||
                                          (event.modifierFlags & NSEventModifierFlagControl) != 0);
    const std::function<void()>& action = context ? contextClicked_ : clicked_;
    if (action) {
        action();
    }
}

@end

namespace vantle {
namespace {

// The height of the menu bar's artwork, in points, as the system's own items draw theirs.
constexpr CGFloat kImageHeight = 18;

NSString* text(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

}  // namespace

struct MacStatusItem::Item {
    NSStatusItem* statusItem = nil;
    VantleStatusItemTarget* target = nil;
};

MacStatusItem::MacStatusItem(const std::filesystem::path& image, const std::string& description,
                             std::function<void()> clicked, std::function<void()> contextClicked)
    : item_(std::make_unique<Item>()) {
    @autoreleasepool {
        item_->statusItem = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
        item_->target = [[VantleStatusItemTarget alloc] initWithClicked:std::move(clicked)
                                                         contextClicked:std::move(contextClicked)];
        NSStatusBarButton* button = item_->statusItem.button;
        NSImage* artwork = [NSImage imageWithSystemSymbolName:@"display.2" accessibilityDescription:text(description)];
        if (artwork == nil) {
            NSString* file = text(image.string());
            artwork = file != nil ? [[NSImage alloc] initWithContentsOfFile:file] : nil;
        }
        if (artwork != nil) {
            // Kept in proportion at the menu bar's height, whatever size the file was drawn at.
            const NSSize drawn = artwork.size;
            if (drawn.height > 0) {
                artwork.size = NSSize{drawn.width * kImageHeight / drawn.height, kImageHeight};
            }
            [artwork setTemplate:YES];
            artwork.accessibilityDescription = text(description);
            button.image = artwork;
        }
        // The target is held by us, not by the button, which keeps it weakly.
        button.target = item_->target;
        button.action = @selector(buttonPressed:);
        [button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
    }
}

MacStatusItem::~MacStatusItem() {
    if (item_->statusItem != nil) {
        [NSStatusBar.systemStatusBar removeStatusItem:item_->statusItem];
    }
}

void MacStatusItem::setToolTip(const std::string& tip) {
    @autoreleasepool {
        item_->statusItem.button.toolTip = text(tip);
    }
}

std::optional<ScreenFrame> MacStatusItem::geometry() const {
    @autoreleasepool {
        // The button fills a small window of its own in the menu bar; that window's frame is in
        // AppKit's screen coordinates, counted up from the bottom of the first screen.
        NSWindow* window = item_->statusItem.button.window;
        NSScreen* first = NSScreen.screens.firstObject;
        if (window == nil || first == nil) {
            return std::nullopt;
        }
        const NSRect frame = window.frame;
        const std::optional<ScreenFrame> rounded =
            roundedFrame(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height);
        const std::optional<ScreenFrame> primary =
            roundedFrame(0, 0, first.frame.size.width, first.frame.size.height);
        if (!rounded || !primary || rounded->width <= 0 || rounded->height <= 0) {
            return std::nullopt;
        }
        return flippedVertically(*rounded, primary->height);
    }
}

bool MacStatusItem::visible() const {
    return item_->statusItem.visible && item_->statusItem.button.window != nil;
}

}  // namespace vantle
