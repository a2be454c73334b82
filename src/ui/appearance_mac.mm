#include "ui/appearance_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#include <utility>

namespace vantle {

struct MacAppearance::Observation {
    id<NSObject> token = nil;
};

namespace {

NSString* const kInterfaceStyleKey = @"AppleInterfaceStyle";
NSString* const kDarkStyle = @"Dark";
// Posted by the system to every process when the user switches between light and dark.
NSNotificationName const kThemeChanged = @"AppleInterfaceThemeChangedNotification";

}  // namespace

MacAppearance::MacAppearance(std::function<void()> changed) : observation_(std::make_unique<Observation>()) {
    if (!changed) {
        return;
    }
    @autoreleasepool {
        // The block holds the callback itself, not this object; the observation ends in our
        // destructor, so the callback never runs for an appearance source that is gone.
        auto handler = std::make_shared<std::function<void()>>(std::move(changed));
        observation_->token = [NSDistributedNotificationCenter.defaultCenter
            addObserverForName:kThemeChanged
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification*) {
                      (*handler)();
                    }];
    }
}

MacAppearance::~MacAppearance() {
    if (observation_ && observation_->token != nil) {
        [NSDistributedNotificationCenter.defaultCenter removeObserver:observation_->token];
    }
}

bool MacAppearance::dark() const {
    @autoreleasepool {
        // Read afresh each time: the shared domain holds the key only while dark mode is on.
        NSString* style = [NSUserDefaults.standardUserDefaults stringForKey:kInterfaceStyleKey];
        return style != nil && [style isEqualToString:kDarkStyle];
    }
}

void MacAppearance::apply(bool dark) {
    @autoreleasepool {
        // Named outright both ways: following the system (nil) would leave a program that was
        // asked for the light look dark while the system is dark.
        NSApplication.sharedApplication.appearance =
            [NSAppearance appearanceNamed:dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua];
    }
}

}  // namespace vantle
