// The root class and the protocol every object answers.
#pragma once

#include <Foundation/NSObjCRuntime.h>

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (Class)class;
- (BOOL)respondsToSelector:(SEL)aSelector;
- (BOOL)isKindOfClass:(Class)aClass;
@end

__attribute__((objc_root_class))
@interface NSObject <NSObject> {
    Class isa;
}
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
@end
