// Ordered collections, as far as our files count them.
#pragma once

#import <Foundation/NSObject.h>

@interface NSArray<ObjectType> : NSObject
@property(readonly) NSUInteger count;
@end
