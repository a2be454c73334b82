// Windows, as far as our files make a borderless cover of a screen. Stands for
// <AppKit/NSWindow.h>.
#pragma once

#import <AppKit/NSColor.h>
#import <AppKit/NSResponder.h>
#import <Foundation/NSGeometry.h>

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask){
    NSWindowStyleMaskBorderless = 0,
    // Only for panels: clicking the panel does not activate its application.
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType){
    NSBackingStoreBuffered = 2,
};

typedef NSInteger NSWindowLevel;
// Above normal windows, below the Dock, the menu bar and pop-up menus.
static const NSWindowLevel NSFloatingWindowLevel = 3;

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior){
    NSWindowCollectionBehaviorDefault = 0,
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorMoveToActiveSpace = 1 << 1,
    NSWindowCollectionBehaviorStationary = 1 << 4,
    NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

@interface NSWindow : NSResponder
// contentRect is in screen coordinates, whose y axis points up from the bottom of the first screen.
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;

@property(readonly) NSRect frame;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;

@property(copy) NSColor* backgroundColor;
@property(getter=isOpaque) BOOL opaque;
@property BOOL ignoresMouseEvents;
@property BOOL hasShadow;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property CGFloat alphaValue;
// Under automatic reference counting a window must not also release itself when closed.
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(readonly, getter=isVisible) BOOL visible;

- (void)orderOut:(id)sender;
// Brings the window forward even when its application is not the active one.
- (void)orderFrontRegardless;
@end
