// The umbrella header: every Foundation part that has a declarations file here.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <Foundation/NSObject.h>
#if __has_include(<Foundation/NSString.h>)
#import <Foundation/NSString.h>
#endif
#if __has_include(<Foundation/NSArray.h>)
#import <Foundation/NSArray.h>
#endif
#if __has_include(<Foundation/NSBundle.h>)
#import <Foundation/NSBundle.h>
#endif
