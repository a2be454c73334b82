// The light and dark looks of AppKit's controls and windows. Stands for <AppKit/NSAppearance.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

typedef NSString* NSAppearanceName;

#ifdef __cplusplus
extern "C" {
#endif

extern NSAppearanceName const NSAppearanceNameAqua;
extern NSAppearanceName const NSAppearanceNameDarkAqua;

#ifdef __cplusplus
}
#endif

@interface NSAppearance : NSObject
// Nil for a name the system does not know.
+ (NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end
