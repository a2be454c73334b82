#include "app/session_end_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

namespace vantle {

struct PowerOffWatch::Observation {
    id<NSObject> token = nil;
};

PowerOffWatch::PowerOffWatch(SessionEndHandler& handler) : observation_(std::make_unique<Observation>()) {
    @autoreleasepool {
        SessionEndHandler* target = &handler;
        // The workspace posts on its own centre, not the default one. The observation ends in
        // our destructor, which comes before the handler's (the application's) end.
        observation_->token = [NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:NSWorkspaceWillPowerOffNotification
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification*) {
                      target->endSession();
                    }];
    }
}

PowerOffWatch::~PowerOffWatch() {
    if (observation_->token != nil) {
        [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:observation_->token];
    }
}

}  // namespace vantle
