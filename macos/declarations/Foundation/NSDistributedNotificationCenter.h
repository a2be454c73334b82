// Notifications that other processes post, the system's among them. Stands for
// <Foundation/NSDistributedNotificationCenter.h>.
#pragma once

#import <Foundation/NSNotification.h>

@interface NSDistributedNotificationCenter : NSNotificationCenter
@property(class, readonly, strong) NSDistributedNotificationCenter* defaultCenter;
@end
