// Points in time as objects, as far as our files make a deadline. Stands for <Foundation/NSDate.h>.
#pragma once

#import <Foundation/NSObject.h>

// Seconds, with fractions.
typedef double NSTimeInterval;

@interface NSDate : NSObject
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;
@end
