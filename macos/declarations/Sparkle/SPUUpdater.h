// The updater itself. Stands for <Sparkle/SPUUpdater.h>. Main thread only.
#pragma once

#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>

// Which of the updater's checks a cycle was.
typedef NS_ENUM(NSInteger, SPUUpdateCheck){
    SPUUpdateCheckUpdates = 0,                // -checkForUpdates, asked for by the user
    SPUUpdateCheckUpdatesInBackground = 1,    // -checkForUpdatesInBackground, the schedule's
    SPUUpdateCheckUpdateInformation = 2,      // -checkForUpdateInformation, a silent probe
};

@interface SPUUpdater : NSObject
// Checks the bundle's set-up (feed address, signing key) and schedules the automatic checks;
// NO with the reason when the updater cannot work.
- (BOOL)startUpdater:(NSError* __autoreleasing*)error;
// A check the user asked for, with the framework's progress window.
- (void)checkForUpdates;
// A check without a window unless it finds something.
- (void)checkForUpdatesInBackground;
// NO while a check runs or before the updater started. Observable by key-value observing.
@property(readonly) BOOL canCheckForUpdates;
// Kept by the framework in the application's own defaults.
@property BOOL automaticallyChecksForUpdates;
@end
