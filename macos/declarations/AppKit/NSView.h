// Views, controls and buttons, as far as our files use the menu bar's button. Stands for
// <AppKit/NSView.h>, <AppKit/NSControl.h> and <AppKit/NSButton.h>.
#pragma once

#import <AppKit/NSEvent.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSResponder.h>
#import <AppKit/NSWindow.h>
#import <Foundation/NSGeometry.h>
#import <Foundation/NSString.h>

@interface NSView : NSResponder
// Nil while the view is in no window.
@property(readonly, weak) NSWindow* window;
@property(copy) NSString* toolTip;
@end

@interface NSControl : NSView
// The target is not retained.
@property(weak) id target;
@property SEL action;
// Which mouse events send the action; returns the mask there was before.
- (NSInteger)sendActionOn:(NSEventMask)mask;
@end

@interface NSButton : NSControl
@property(strong) NSImage* image;
@end
