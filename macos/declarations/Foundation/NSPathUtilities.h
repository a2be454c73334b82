// Paths as text, and the user's folders. Stands for <Foundation/NSPathUtilities.h>.
#pragma once

#import <Foundation/NSString.h>

@interface NSString (NSStringPathExtensions)
// The path with "~" expanded and "..", "." and doubled slashes taken out.
@property(readonly, copy) NSString* stringByStandardizingPath;
@end

#ifdef __cplusplus
extern "C" {
#endif

NSString* NSHomeDirectory(void);

#ifdef __cplusplus
}
#endif
