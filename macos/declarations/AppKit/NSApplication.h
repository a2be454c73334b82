// The application object, as far as our files set its look. Stands for <AppKit/NSApplication.h>.
#pragma once

#import <AppKit/NSAppearance.h>
#import <AppKit/NSResponder.h>

@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
// The look of every window of the application; nil follows the system's.
@property(strong) NSAppearance* appearance;
@end
