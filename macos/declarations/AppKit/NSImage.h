// Images, as far as our files load one from a file for the menu bar. Stands for
// <AppKit/NSImage.h>.
#pragma once

#import <Foundation/NSData.h>
#import <Foundation/NSGeometry.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@interface NSImage : NSObject
// Nil when the file cannot be read as an image.
- (instancetype)initWithContentsOfFile:(NSString*)fileName;
// One of the system's symbol images (macOS 11 and later), drawn as a template; nil when the
// system has no symbol of that name.
+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description;
// Nil when the bytes are not an image of a known format.
- (instancetype)initWithData:(NSData*)data;
// The size in points at which the image is drawn.
@property NSSize size;
// A template image is drawn by its alpha alone, in the colour that suits the menu bar's look.
// The property is named "template", a keyword of C++, so Objective-C++ reaches it through its
// accessor methods.
- (BOOL)isTemplate;
- (void)setTemplate:(BOOL)isTemplate;
// What VoiceOver reads for the image.
@property(copy) NSString* accessibilityDescription;
@end
