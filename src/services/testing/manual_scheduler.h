#pragma once

#include <algorithm>
#include <vector>

#include "services/scheduler.h"

namespace vantle::testing {

// A scheduler whose time moves only when the test says so.
class ManualScheduler final : public Scheduler {
public:
    std::shared_ptr<ScheduledCall> after(std::chrono::milliseconds delay, std::function<void()> call) override {
        auto pending = std::make_shared<Pending>(now_ + delay, std::move(call));
        pending_.push_back(pending);
        return pending;
    }

    // Moves time on, running every call that falls due, in time order.
    void advance(std::chrono::milliseconds by) {
        const std::chrono::milliseconds until = now_ + by;
        for (;;) {
            auto next = std::min_element(pending_.begin(), pending_.end(),
                                         [](const auto& left, const auto& right) { return left->due < right->due; });
            if (next == pending_.end() || (*next)->due > until) {
                break;
            }
            std::shared_ptr<Pending> due = *next;
            pending_.erase(next);
            now_ = due->due;
            if (!due->cancelled) {
                due->call();
            }
        }
        now_ = until;
    }

    std::size_t waiting() const {
        return static_cast<std::size_t>(
            std::count_if(pending_.begin(), pending_.end(), [](const auto& pending) { return !pending->cancelled; }));
    }

private:
    struct Pending final : ScheduledCall {
        Pending(std::chrono::milliseconds when, std::function<void()> what) : due(when), call(std::move(what)) {}
        void cancel() override { cancelled = true; }
        std::chrono::milliseconds due;
        std::function<void()> call;
        bool cancelled = false;
    };

    std::chrono::milliseconds now_{0};
    std::vector<std::shared_ptr<Pending>> pending_;
};

}  // namespace vantle::testing
