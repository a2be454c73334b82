#include "app/run_loop_wait_mac.h"

#import <Foundation/Foundation.h>

#include <thread>

namespace vantle {
namespace {

// Short turns, so that done() is asked again soon after the source that changed it.
constexpr NSTimeInterval kTurnSeconds = 0.05;
constexpr std::chrono::milliseconds kPauseWithoutSources{10};

}  // namespace

bool runLoopUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        @autoreleasepool {
            // A run loop with no source in the mode returns at once; without the pause this
            // would spin a core until the deadline.
            if (![NSRunLoop.currentRunLoop runMode:NSDefaultRunLoopMode
                                        beforeDate:[NSDate dateWithTimeIntervalSinceNow:kTurnSeconds]]) {
                std::this_thread::sleep_for(kPauseWithoutSources);
            }
        }
    }
    return true;
}

}  // namespace vantle
