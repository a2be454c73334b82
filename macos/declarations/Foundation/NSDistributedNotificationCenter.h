// Notifications that other processes post, the system's among them. Stands for
// <Foundation/NSDistributedNotificationCenter.h>.
#pragma once

#import <Foundation/NSNotification.h>

@interface NSDistributedNotificationCenter : NSNotificationCenter
@property(class, readonly, strong) NSDistributedNotificationCenter* defaultCenter;
// Posts to every process of the user that observes the name; object must be a string. With
// deliverImmediately, observers whose applications are suspended receive it at once as well.
- (void)postNotificationName:(NSNotificationName)name
                      object:(NSString*)object
                    userInfo:(id)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end
