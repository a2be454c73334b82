// Operation queues, as far as our files name the main one. Stands for <Foundation/NSOperation.h>.
#pragma once

#import <Foundation/NSObject.h>

@interface NSOperationQueue : NSObject
// Runs its blocks on the main thread.
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end
