// The menu bar's status items. Stands for <AppKit/NSStatusBar.h> and <AppKit/NSStatusItem.h>.
#pragma once

#import <AppKit/NSView.h>
#import <Foundation/NSObject.h>

// An item as wide as its content.
static const CGFloat NSVariableStatusItemLength = -1.0;

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
// The button the item shows; it lives as long as the item.
@property(readonly, strong) NSStatusBarButton* button;
@property(getter=isVisible) BOOL visible;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
// The item stays in the menu bar until it is removed, or until the last reference to it goes.
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end
