#include "services/updates/updater_mac.h"

#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

#include <string>

namespace {

std::string utf8(NSString* text) {
    const char* bytes = text != nil ? text.UTF8String : nullptr;
    return bytes != nullptr ? std::string(bytes) : std::string();
}

// The framework's "nothing newer" is our own: the program tells it apart by our domain and
// code alone, so that another source's 1001 stays a failure.
vantle::UpdateError updateError(NSError* error) {
    if ([error.domain isEqualToString:SUSparkleErrorDomain] && error.code == SUNoUpdateError) {
        return {std::string(vantle::kUpdaterErrorDomain), vantle::kNoUpdateErrorCode,
                utf8(error.localizedDescription)};
    }
    return {utf8(error.domain), static_cast<int>(error.code), utf8(error.localizedDescription)};
}

}  // namespace

// Hands the framework's delegate calls to the program's delegate. The framework holds it
// weakly; the updater below keeps it alive.
@interface VantleSparkleDelegate : NSObject <SPUUpdaterDelegate>
- (instancetype)initWithDelegate:(vantle::UpdaterDelegate*)delegate;
@end

@implementation VantleSparkleDelegate {
    vantle::UpdaterDelegate* delegate_;
}

- (instancetype)initWithDelegate:(vantle::UpdaterDelegate*)delegate {
    self = [super init];
    if (self != nil) {
        delegate_ = delegate;
    }
    return self;
}

- (void)updater:(SPUUpdater*)updater didFindValidUpdate:(SUAppcastItem*)item {
    (void)updater;
    vantle::UpdateOffer offer;
    offer.version = utf8(item.versionString);
    offer.displayVersion = utf8(item.displayVersionString);
    offer.downloadLink = utf8(item.fileURL.absoluteString);
    if (item.releaseNotesURL != nil) {
        offer.releaseNotesLink = utf8(item.releaseNotesURL.absoluteString);
    }
    delegate_->updaterDidFindValidUpdate(offer);
}

- (void)updater:(SPUUpdater*)updater
    didFinishUpdateCycleForUpdateCheck:(SPUUpdateCheck)updateCheck
                                 error:(NSError*)error {
    (void)updater;
    const vantle::UpdateCheck check = updateCheck == SPUUpdateCheckUpdates ? vantle::UpdateCheck::userInitiated
                                                                           : vantle::UpdateCheck::background;
    delegate_->updaterDidFinishUpdateCycle(check, error != nil ? std::optional(updateError(error)) : std::nullopt);
}

// The muted levels are given back here, before the framework ends the program. The program
// never holds the relaunch back, so the install handler is not kept.
- (BOOL)updater:(SPUUpdater*)updater
    shouldPostponeRelaunchForUpdate:(SUAppcastItem*)item
                 untilInvokingBlock:(void (^)(void))installHandler {
    (void)updater;
    (void)item;
    (void)installHandler;
    return delegate_->updaterShouldPostponeRelaunchForUpdate() ? YES : NO;
}

@end

namespace vantle {

struct SparkleUpdater::Framework {
    VantleSparkleDelegate* delegate = nil;
    SPUStandardUpdaterController* controller = nil;
};

SparkleUpdater::SparkleUpdater(UpdaterDelegate& delegate) : framework_(std::make_unique<Framework>()) {
    @autoreleasepool {
        framework_->delegate = [[VantleSparkleDelegate alloc] initWithDelegate:&delegate];
        // Started by startUpdater(), so that a failed start is ours to report.
        framework_->controller = [[SPUStandardUpdaterController alloc] initWithStartingUpdater:NO
                                                                               updaterDelegate:framework_->delegate
                                                                            userDriverDelegate:nil];
    }
}

SparkleUpdater::~SparkleUpdater() = default;

std::optional<UpdateError> SparkleUpdater::startUpdater() {
    @autoreleasepool {
        NSError* error = nil;
        if ([framework_->controller.updater startUpdater:&error]) {
            return std::nullopt;
        }
        if (error == nil) {
            return UpdateError{std::string(kUpdaterErrorDomain), 0, std::string()};
        }
        return updateError(error);
    }
}

void SparkleUpdater::checkForUpdates() {
    // Through the controller, which shows the framework's progress window.
    [framework_->controller checkForUpdates:nil];
}

void SparkleUpdater::checkForUpdatesInBackground() {
    [framework_->controller.updater checkForUpdatesInBackground];
}

bool SparkleUpdater::automaticallyChecksForUpdates() const {
    return framework_->controller.updater.automaticallyChecksForUpdates;
}

void SparkleUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    framework_->controller.updater.automaticallyChecksForUpdates = automatically ? YES : NO;
}

bool SparkleUpdater::canCheckForUpdates() const {
    return framework_->controller.updater.canCheckForUpdates;
}

}  // namespace vantle
