// What the updater tells its delegate. Stands for <Sparkle/SPUUpdaterDelegate.h>. Every method
// is optional and called on the main thread.
#pragma once

#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>
#import <Sparkle/SPUUpdater.h>
#import <Sparkle/SUAppcastItem.h>

@protocol SPUUpdaterDelegate <NSObject>
@optional
// A version newer than the running one was found.
- (void)updater:(SPUUpdater*)updater didFindValidUpdate:(SUAppcastItem*)item;
// The end of every cycle; error is nil for a cycle that ended normally, and has the code
// SUNoUpdateError in the framework's domain when nothing newer was found.
- (void)updater:(SPUUpdater*)updater
    didFinishUpdateCycleForUpdateCheck:(SPUUpdateCheck)updateCheck
                                 error:(NSError*)error;
// The framework is about to end the application and start the new version. YES holds the
// relaunch back until installHandler is called.
- (BOOL)updater:(SPUUpdater*)updater
    shouldPostponeRelaunchForUpdate:(SUAppcastItem*)item
                 untilInvokingBlock:(void (^)(void))installHandler;
@end

// The standard user interface's delegate; our files give none.
@protocol SPUStandardUserDriverDelegate <NSObject>
@end
