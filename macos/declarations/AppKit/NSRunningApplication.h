// Other running applications, as far as our files look one up by its bundle identifier.
#pragma once

#import <Foundation/NSObject.h>

@class NSArray<ObjectType>;
@class NSString;

@interface NSRunningApplication : NSObject
// Every running instance with this identifier; empty when none runs.
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
@end
