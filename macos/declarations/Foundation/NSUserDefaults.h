// The user's defaults, as far as our files read a system setting. Stands for
// <Foundation/NSUserDefaults.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@interface NSUserDefaults : NSObject
// The application's domain, searched before the domains every application shares.
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
// Nil when no domain has the key or its value is not text.
- (NSString*)stringForKey:(NSString*)defaultName;
@end
