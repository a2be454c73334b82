// The application's bundle, as far as our files read its identity and place.
#pragma once

#import <Foundation/NSObject.h>

@class NSArray<ObjectType>;
@class NSString;

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
// Nil only for a bundle without an identifier; the application's own bundle always has one.
@property(readonly, copy) NSString* bundleIdentifier;
// The full path of the bundle's folder (the .app).
@property(readonly, copy) NSString* bundlePath;
// The folder of the bundle's resources (Contents/Resources of an application); nil when the
// bundle has none.
@property(readonly, copy) NSString* resourcePath;
// The full path of the bundle's executable; nil when it has none.
@property(readonly, copy) NSString* executablePath;
// The bundle's localizations that the user's language list picks for it, most preferred first.
@property(readonly, copy) NSArray<NSString*>* preferredLocalizations;
// The value of a key of the bundle's Info.plist, localized where the bundle localizes it; nil
// when the key is absent.
- (id)objectForInfoDictionaryKey:(NSString*)key;
@end
