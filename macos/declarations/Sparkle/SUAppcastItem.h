// One version the update feed offers. Stands for <Sparkle/SUAppcastItem.h>.
#pragma once

#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>
#import <Foundation/NSURL.h>

@interface SUAppcastItem : NSObject
// The build version, compared with the bundle's CFBundleVersion.
@property(readonly, copy) NSString* versionString;
// The version shown to people: the feed's short version, else the build version.
@property(readonly, copy) NSString* displayVersionString;
// Where the update's archive is; nil for an item that only informs.
@property(readonly, strong) NSURL* fileURL;
// The release notes' page; nil when the item has none.
@property(readonly, strong) NSURL* releaseNotesURL;
@end
