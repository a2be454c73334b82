#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vantle {

// A delayed call that can be called off.
class ScheduledCall {
public:
    virtual ~ScheduledCall() = default;
    // After this the call never runs; calling it off twice, or after it ran, does nothing.
    virtual void cancel() = 0;
};

// Runs calls later on the main thread. Injected wherever the program waits, so that tests
// advance a clock of their own instead of sleeping.
class Scheduler {
public:
    virtual ~Scheduler() = default;
    // Runs call once, after delay. Dropping the returned handle does not call it off.
    virtual std::shared_ptr<ScheduledCall> after(std::chrono::milliseconds delay, std::function<void()> call) = 0;
};

}  // namespace vantle
