// Notifications and the centres that deliver them. Stands for <Foundation/NSNotification.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSOperation.h>
#import <Foundation/NSString.h>

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject
@property(readonly, copy) NSNotificationName name;
@end

@interface NSNotificationCenter : NSObject
// The returned object stands for the observation until it is handed to removeObserver:.
- (id<NSObject>)addObserverForName:(NSNotificationName)name
                            object:(id)obj
                             queue:(NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end
