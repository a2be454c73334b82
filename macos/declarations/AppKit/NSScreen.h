// The screens of the window server as AppKit sees them. Stands for <AppKit/NSScreen.h>.
#pragma once

#import <AppKit/NSGraphics.h>
#import <Foundation/NSArray.h>
#import <Foundation/NSDictionary.h>
#import <Foundation/NSGeometry.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@interface NSScreen : NSObject
// The first screen is the one with the menu bar; its frame's origin is (0, 0) of the screen
// coordinates, whose y axis points up.
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
// The frame less the menu bar and the Dock.
@property(readonly) NSRect visibleFrame;
// Holds the display id under "NSScreenNumber" as a number.
@property(readonly, copy) NSDictionary<NSDeviceDescriptionKey, id>* deviceDescription;
@property(readonly, copy) NSString* localizedName;
@end
