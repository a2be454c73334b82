// Keyed collections, as far as our files look a value up. Stands for <Foundation/NSDictionary.h>.
#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

@interface NSDictionary<KeyType, ObjectType> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
// Nil when the key has no value.
- (ObjectType)objectForKey:(KeyType)aKey;
- (ObjectType)objectForKeyedSubscript:(KeyType)key;
@end
