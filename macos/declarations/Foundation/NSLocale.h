// Locales, as far as our files read the user's languages. Stands for <Foundation/NSLocale.h>.
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@interface NSLocale : NSObject
// The user's languages as BCP 47 tags, most preferred first, with the application's own
// "AppleLanguages" setting in front when it has one.
@property(class, readonly, copy) NSArray<NSString*>* preferredLanguages;
@end
