// Colours, as far as our files paint a window black. Stands for <AppKit/NSColor.h>.
#pragma once

#import <Foundation/NSObject.h>

@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* blackColor;
@end
