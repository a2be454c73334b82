// Ordered collections, as far as our files count, index and walk them. Stands for
// <Foundation/NSArray.h>.
#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

@interface NSArray<ObjectType> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
// Nil for an empty array.
@property(readonly) ObjectType firstObject;
- (ObjectType)objectAtIndex:(NSUInteger)index;
@end

@interface NSMutableArray<ObjectType> : NSArray<ObjectType>
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems;
- (void)addObject:(ObjectType)anObject;
@end
