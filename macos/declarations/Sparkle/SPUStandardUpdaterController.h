// The updater with the framework's own windows. Stands for
// <Sparkle/SPUStandardUpdaterController.h>. Main thread only.
#pragma once

#import <Foundation/NSObject.h>
#import <Sparkle/SPUUpdater.h>
#import <Sparkle/SPUUpdaterDelegate.h>

@interface SPUStandardUpdaterController : NSObject
// With startUpdater NO the updater waits for -[SPUUpdater startUpdater:]. The delegates are
// held weakly: the caller keeps them alive.
- (instancetype)initWithStartingUpdater:(BOOL)startUpdater
                        updaterDelegate:(id<SPUUpdaterDelegate>)updaterDelegate
                     userDriverDelegate:(id<SPUStandardUserDriverDelegate>)userDriverDelegate;
@property(readonly) SPUUpdater* updater;
// The check-for-updates action, with the progress window; sender may be nil.
- (void)checkForUpdates:(id)sender;
@end
