// Bytes in memory, as far as our files hand a file's contents to AppKit. Stands for
// <Foundation/NSData.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSObjCRuntime.h>

@interface NSData : NSObject
// A copy of length bytes at bytes.
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@end
