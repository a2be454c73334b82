#pragma once

#include "services/scheduler.h"

namespace vantle {

// Delayed calls on the toolkit's event loop.
class QtScheduler final : public Scheduler {
public:
    std::shared_ptr<ScheduledCall> after(std::chrono::milliseconds delay, std::function<void()> call) override;
};

}  // namespace vantle
