// Addresses of resources, as far as our files make one. Stands for <Foundation/NSURL.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@interface NSURL : NSObject
// Nil when the text is not a valid address.
+ (instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDir;
// The address as text; nil only for an address that was never valid.
@property(readonly, copy) NSString* absoluteString;
@end
