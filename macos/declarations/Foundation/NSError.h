// Errors as objects, as far as our files show one. Stands for <Foundation/NSError.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

typedef NSString* NSErrorDomain;

@interface NSError : NSObject
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
// A sentence for the user, in the user's language.
@property(readonly, copy) NSString* localizedDescription;
@end
