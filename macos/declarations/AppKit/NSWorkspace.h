// The workspace: opening addresses and applications with the user's own programs. Stands for
// <AppKit/NSWorkspace.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSURL.h>

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
// Opens the address with the program the user chose for its kind (a web address in the
// browser, a file URL of an application by starting it); NO when nothing could open it.
- (BOOL)openURL:(NSURL*)url;
@end
