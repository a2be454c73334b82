// The application's bundle, as far as our files read its identity and place.
#pragma once

#import <Foundation/NSObject.h>

@class NSString;

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
// Nil only for a bundle without an identifier; the application's own bundle always has one.
@property(readonly, copy) NSString* bundleIdentifier;
// The full path of the bundle's folder (the .app).
@property(readonly, copy) NSString* bundlePath;
@end
