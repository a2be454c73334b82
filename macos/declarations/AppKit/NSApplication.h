// The application object, as far as our files set its look and read the event being handled. Stands for <AppKit/NSApplication.h>.
#pragma once

#import <AppKit/NSAppearance.h>
#import <AppKit/NSEvent.h>
#import <AppKit/NSResponder.h>

@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
// The look of every window of the application; nil follows the system's.
@property(strong) NSAppearance* appearance;
// The event being handled now; nil outside the handling of one.
@property(readonly, strong) NSEvent* currentEvent;
@end
