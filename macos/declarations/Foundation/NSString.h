// Text objects, as far as our files turn them into and from UTF-8 and compare them.
#pragma once

#import <Foundation/NSObject.h>

@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
// The bytes belong to the string and live at least as long as the current autorelease pool.
@property(readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
- (BOOL)isEqualToString:(NSString*)aString;
@end
