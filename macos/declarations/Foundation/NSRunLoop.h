// The thread's run loop, as far as our files run it for a while. Stands for
// <Foundation/NSRunLoop.h>.
#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

typedef NSString* NSRunLoopMode;
#ifdef __cplusplus
extern "C" {
#endif

// The mode in which timers, sources and notifications are handled outside menus and drags.
extern NSRunLoopMode const NSDefaultRunLoopMode;

#ifdef __cplusplus
}
#endif

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* currentRunLoop;
// Handles one input source, or waits for one until limitDate; NO when the mode has no sources.
- (BOOL)runMode:(NSRunLoopMode)mode beforeDate:(NSDate*)limitDate;
@end
