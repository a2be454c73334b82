// The base of every object that answers events. Stands for <AppKit/NSResponder.h>.
#pragma once

#import <Foundation/NSObject.h>

@interface NSResponder : NSObject
@end
