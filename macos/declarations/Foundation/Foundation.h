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
#if __has_include(<Foundation/NSGeometry.h>)
#import <Foundation/NSGeometry.h>
#endif
#if __has_include(<Foundation/NSEnumerator.h>)
#import <Foundation/NSEnumerator.h>
#endif
#if __has_include(<Foundation/NSDictionary.h>)
#import <Foundation/NSDictionary.h>
#endif
#if __has_include(<Foundation/NSValue.h>)
#import <Foundation/NSValue.h>
#endif
#if __has_include(<Foundation/NSURL.h>)
#import <Foundation/NSURL.h>
#endif
#if __has_include(<Foundation/NSError.h>)
#import <Foundation/NSError.h>
#endif
#if __has_include(<Foundation/NSPathUtilities.h>)
#import <Foundation/NSPathUtilities.h>
#endif
#if __has_include(<Foundation/NSUserDefaults.h>)
#import <Foundation/NSUserDefaults.h>
#endif
#if __has_include(<Foundation/NSOperation.h>)
#import <Foundation/NSOperation.h>
#endif
#if __has_include(<Foundation/NSNotification.h>)
#import <Foundation/NSNotification.h>
#endif
#if __has_include(<Foundation/NSDistributedNotificationCenter.h>)
#import <Foundation/NSDistributedNotificationCenter.h>
#endif
#if __has_include(<Foundation/NSBundle.h>)
#import <Foundation/NSBundle.h>
#endif
#if __has_include(<Foundation/NSDate.h>)
#import <Foundation/NSDate.h>
#endif
#if __has_include(<Foundation/NSRunLoop.h>)
#import <Foundation/NSRunLoop.h>
#endif
#if __has_include(<Foundation/NSLocale.h>)
#import <Foundation/NSLocale.h>
#endif
#if __has_include(<Foundation/NSData.h>)
#import <Foundation/NSData.h>
#endif
