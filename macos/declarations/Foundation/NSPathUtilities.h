// Paths as text, and the user's folders. Stands for <Foundation/NSPathUtilities.h>.
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSObjCRuntime.h>
#import <Foundation/NSString.h>

@interface NSString (NSStringPathExtensions)
// The path with "~" expanded and "..", "." and doubled slashes taken out.
@property(readonly, copy) NSString* stringByStandardizingPath;
// The path with one more component, a slash put between them where needed.
- (NSString*)stringByAppendingPathComponent:(NSString*)str;
@end

// The kinds of standard folder, as far as our files ask for one.
typedef NS_ENUM(NSUInteger, NSSearchPathDirectory){
    // ~/Library/Application Support in the user's domain.
    NSApplicationSupportDirectory = 14,
};

// The domains a standard folder is looked for in.
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask){
    NSUserDomainMask = 1,
};

#ifdef __cplusplus
extern "C" {
#endif

// The paths of the standard folder of that kind in each domain asked for, most specific first;
// with expandTilde, "~" is spelt out.
NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                        NSSearchPathDomainMask domainMask, BOOL expandTilde);
NSString* NSHomeDirectory(void);
// The user's own temporary folder, which no other user can write to.
NSString* NSTemporaryDirectory(void);

#ifdef __cplusplus
}
#endif
