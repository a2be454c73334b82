// The workspace: opening addresses and applications with the user's own programs, and the
// notifications of the user's session. Stands for <AppKit/NSWorkspace.h>.
#pragma once

#import <AppKit/NSImage.h>
#import <AppKit/NSRunningApplication.h>
#import <Foundation/NSArray.h>
#import <Foundation/NSError.h>
#import <Foundation/NSNotification.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSURL.h>

#ifdef __cplusplus
extern "C" {
#endif

// Posted on the workspace's own centre when the user logs out, restarts or shuts down, before
// the applications are asked to quit.
extern NSNotificationName const NSWorkspaceWillPowerOffNotification;

#ifdef __cplusplus
}
#endif

// How an application is opened (macOS 10.15 and later).
@interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration;
// Whether the opened application comes to the front; YES unless set.
@property BOOL activates;
// A new instance even when one of the application already runs; NO unless set.
@property BOOL createsNewApplicationInstance;
// The command-line arguments of a newly started instance.
@property(copy) NSArray<NSString*>* arguments;
@end

// Which of an icon's representations setIcon:forFile:options: leaves out; 0 makes them all.
typedef NS_OPTIONS(NSUInteger, NSWorkspaceIconCreationOptions){
    NSExcludeQuickDrawElementsIconCreationOption = 1 << 1,
    NSExclude10_4ElementsIconCreationOption = 1 << 2,
};

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
// The centre that posts the workspace's notifications; not the default centre.
@property(readonly, strong) NSNotificationCenter* notificationCenter;
// Opens the address with the program the user chose for its kind (a web address in the
// browser, a file URL of an application by starting it); NO when nothing could open it.
- (BOOL)openURL:(NSURL*)url;
// Opens the application bundle at applicationURL. The handler runs on a queue of the system's,
// not the main one, with the application or the error.
- (void)openApplicationAtURL:(NSURL*)applicationURL
               configuration:(NSWorkspaceOpenConfiguration*)configuration
           completionHandler:(void (^)(NSRunningApplication* app, NSError* error))completionHandler;
// Gives the file or folder at fullPath the image as its custom icon, scaled to every size the
// Finder uses; NO when it could not be set.
- (BOOL)setIcon:(NSImage*)image forFile:(NSString*)fullPath options:(NSWorkspaceIconCreationOptions)options;
@end
