#include "display/ddc/ddc_monitor_worker.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace vantle::ddc {

using Clock = std::chrono::steady_clock;

struct DdcMonitorWorker::State {
    mutable std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable finishedChanged;
    std::optional<float> pending;
    std::optional<float> inFlight;
    std::optional<float> confirmed;
    bool refreshRequested = false;
    bool reopenRequested = false;
    bool stop = false;
    bool finished = false;
};

namespace {

// What the monitor's thread knows and does; it lives on that thread only.
class Session {
public:
    Session(DdcMonitorWorker::State& state, DdcBus& bus, const DdcDisplayInfo& monitor, const DdcTimings& timings)
        : state_(state), bus_(bus), monitor_(monitor), timings_(timings) {}

    void run() {
        auto nextRefresh = Clock::now();
        for (;;) {
            std::optional<float> level;
            bool reopen = false;
            bool refresh = false;
            {
                std::unique_lock lock(state_.mutex);
                state_.wake.wait_until(lock, nextRefresh, [&] {
                    return state_.stop || state_.pending || state_.refreshRequested || state_.reopenRequested;
                });
                if (state_.stop) {
                    break;
                }
                level = std::exchange(state_.pending, std::nullopt);
                state_.inFlight = level;
                reopen = std::exchange(state_.reopenRequested, false);
                refresh = std::exchange(state_.refreshRequested, false);
            }
            if (reopen) {
                // Closed here, on the thread that opened it; the next command opens it again.
                handle_.reset();
                if (!level && !refresh) {
                    nextRefresh = Clock::now() + timings_.settleAfterWake;
                    continue;
                }
            }
            if (level) {
                writeLevel(*level);
            } else {
                readLevel();
            }
            nextRefresh = Clock::now() + timings_.refreshInterval;
        }
        // Closing happens here, on the thread that opened the monitor.
        handle_.reset();
    }

private:
    bool ensureOpen() {
        if (handle_ && handle_->lost()) {
            handle_.reset();
        }
        if (!handle_) {
            handle_ = bus_.open(monitor_.token);
        }
        return handle_ != nullptr;
    }

    bool readLevel() {
        if (!ensureOpen()) {
            return false;
        }
        const auto reading = handle_->read(kLuminanceFeature);
        if (!reading || reading->maximum == 0) {
            return false;
        }
        maximum_ = reading->maximum;
        const float level = std::min(1.0f, static_cast<float>(reading->current) / static_cast<float>(*maximum_));
        std::lock_guard lock(state_.mutex);
        state_.confirmed = level;
        return true;
    }

    bool tryWrite(float level) {
        // The maximum comes with a reading; without one there is nothing to scale the level to.
        if (!ensureOpen() || (!maximum_ && !readLevel())) {
            return false;
        }
        const auto value = static_cast<std::uint16_t>(std::lround(level * static_cast<float>(*maximum_)));
        if (!handle_->write(kLuminanceFeature, value)) {
            return false;
        }
        std::lock_guard lock(state_.mutex);
        state_.confirmed = static_cast<float>(value) / static_cast<float>(*maximum_);
        state_.inFlight.reset();
        return true;
    }

    void writeLevel(float level) {
        for (std::size_t attempt = 0;; ++attempt) {
            if (tryWrite(level)) {
                return;
            }
            if (attempt == timings_.retryDelays.size()) {
                break;
            }
            // Monitors refuse commands that come too quickly after each other, so wait a little
            // longer each time; a newer level or a stop ends the wait, and the newer level wins.
            std::unique_lock lock(state_.mutex);
            if (state_.wake.wait_for(lock, timings_.retryDelays[attempt],
                                     [&] { return state_.stop || state_.pending; })) {
                state_.inFlight.reset();
                return;
            }
        }
        // The monitor kept refusing: show what it really is at instead of what was asked for.
        {
            std::lock_guard lock(state_.mutex);
            state_.inFlight.reset();
        }
        readLevel();
    }

    DdcMonitorWorker::State& state_;
    DdcBus& bus_;
    const DdcDisplayInfo& monitor_;
    const DdcTimings& timings_;
    std::unique_ptr<DdcMonitorHandle> handle_;
    std::optional<std::uint16_t> maximum_;
};

}  // namespace

DdcMonitorWorker::DdcMonitorWorker(std::shared_ptr<DdcBus> bus, DdcDisplayInfo monitor, DdcTimings timings)
    : monitor_(monitor), state_(std::make_shared<State>()),
      thread_(&DdcMonitorWorker::run, state_, std::move(bus), std::move(monitor), std::move(timings)) {}

DdcMonitorWorker::~DdcMonitorWorker() {
    requestStop();
    stopBy(Clock::now() + std::chrono::seconds(1));
}

void DdcMonitorWorker::run(std::shared_ptr<State> state, std::shared_ptr<DdcBus> bus, DdcDisplayInfo monitor,
                           DdcTimings timings) {
    try {
        Session(*state, *bus, monitor, timings).run();
    } catch (...) {
        // Nothing may escape a thread; the monitor simply stays unread.
    }
    std::lock_guard lock(state->mutex);
    state->finished = true;
    state->finishedChanged.notify_all();
}

std::optional<float> DdcMonitorWorker::level() const {
    std::lock_guard lock(state_->mutex);
    if (state_->pending) {
        return state_->pending;
    }
    return state_->inFlight ? state_->inFlight : state_->confirmed;
}

void DdcMonitorWorker::write(float level) {
    std::lock_guard lock(state_->mutex);
    state_->pending = level;
    state_->wake.notify_all();
}

void DdcMonitorWorker::refresh() {
    std::lock_guard lock(state_->mutex);
    state_->refreshRequested = true;
    state_->wake.notify_all();
}

void DdcMonitorWorker::reopen() {
    std::lock_guard lock(state_->mutex);
    state_->reopenRequested = true;
    state_->wake.notify_all();
}

void DdcMonitorWorker::requestStop() {
    std::lock_guard lock(state_->mutex);
    state_->stop = true;
    state_->wake.notify_all();
}

void DdcMonitorWorker::stopBy(Clock::time_point deadline) {
    if (!thread_.joinable()) {
        return;
    }
    bool finished = false;
    {
        std::unique_lock lock(state_->mutex);
        finished = state_->finishedChanged.wait_until(lock, deadline, [&] { return state_->finished; });
    }
    if (finished) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

}  // namespace vantle::ddc
