// Numbers as objects, as far as our files read one. Stands for <Foundation/NSValue.h>.
#pragma once

#import <Foundation/NSObject.h>

@interface NSValue : NSObject
@end

@interface NSNumber : NSValue
@property(readonly) long long longLongValue;
@property(readonly) unsigned int unsignedIntValue;
@property(readonly) BOOL boolValue;
@end
