// The keys of a screen's device description. Stands for <AppKit/NSGraphics.h>.
#pragma once

#import <Foundation/NSString.h>

typedef NSString* NSDeviceDescriptionKey;
