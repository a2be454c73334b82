#include "app/single_instance_mac.h"

#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <chrono>

#include "app/run_loop_wait_mac.h"

namespace vantle {

struct MacSingleInstance::Observation {
    id<NSObject> token = nil;
};

namespace {

constexpr std::chrono::milliseconds kAnswerWait{2000};

NSString* text(const std::string& utf8) {
    return [NSString stringWithUTF8String:utf8.c_str()];
}

// The request and the answer are notifications named after the program, so that no other
// program's copies hear them.
NSString* requestName(const std::string& name) {
    return text(name + ".reopen");
}

NSString* answerName(const std::string& name) {
    return text(name + ".reopened");
}

void post(NSString* notification) {
    // Delivered at once even to a copy whose application the system has suspended for being in
    // the background, which a menu-bar program always is.
    [NSDistributedNotificationCenter.defaultCenter postNotificationName:notification
                                                                 object:nil
                                                               userInfo:nil
                                                     deliverImmediately:YES];
}

}  // namespace

MacSingleInstance::MacSingleInstance(std::string name)
    : name_(std::move(name)), observation_(std::make_unique<Observation>()) {}

MacSingleInstance::~MacSingleInstance() {
    if (observation_->token != nil) {
        [NSDistributedNotificationCenter.defaultCenter removeObserver:observation_->token];
    }
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

bool MacSingleInstance::claim(std::function<void()> reopen) {
    @autoreleasepool {
        NSString* folder = NSTemporaryDirectory();
        NSString* file = [folder stringByAppendingPathComponent:text(name_ + ".lock")];
        if (file == nil) {
            return false;
        }
        const int descriptor = ::open(file.UTF8String, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (descriptor < 0) {
            return false;
        }
        if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            ::close(descriptor);
            return false;
        }
        lock_ = descriptor;

        const std::string name = name_;
        auto handler = std::make_shared<std::function<void()>>(std::move(reopen));
        // The block holds the callback itself, not this object; the observation ends in our
        // destructor, so the callback never runs for an instance that is gone.
        observation_->token = [NSDistributedNotificationCenter.defaultCenter
            addObserverForName:requestName(name)
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification*) {
                      (*handler)();
                      post(answerName(name));
                    }];
        return true;
    }
}

bool MacSingleInstance::askRunningCopyToReopen() const {
    @autoreleasepool {
        auto answered = std::make_shared<std::atomic<bool>>(false);
        id<NSObject> token = [NSDistributedNotificationCenter.defaultCenter addObserverForName:answerName(name_)
                                                                                        object:nil
                                                                                         queue:NSOperationQueue.mainQueue
                                                                                    usingBlock:^(NSNotification*) {
                                                                                      answered->store(true);
                                                                                    }];
        post(requestName(name_));
        // The answer comes through this thread's run loop, which nothing else runs yet.
        const bool reopened = runLoopUntil([answered] { return answered->load(); }, kAnswerWait);
        [NSDistributedNotificationCenter.defaultCenter removeObserver:token];
        return reopened;
    }
}

}  // namespace vantle
