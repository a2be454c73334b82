#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace vantle::testing {

// Stands in for the interface thread's queue: calls handed over from any thread wait here
// until the test's own thread runs them.
class MainQueue {
public:
    std::function<void(std::function<void()>)> poster() {
        return [this](std::function<void()> call) { post(std::move(call)); };
    }

    void post(std::function<void()> call) {
        {
            std::lock_guard lock(mutex_);
            calls_.push_back(std::move(call));
        }
        arrived_.notify_all();
    }

    // Runs the calls handed over so far on the calling thread, in order; returns how many ran.
    int drain() {
        int ran = 0;
        while (std::function<void()> call = next()) {
            call();
            ++ran;
        }
        return ran;
    }

    // Runs calls as they arrive until done() holds; false when the time ran out first.
    bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        for (;;) {
            drain();
            if (done()) {
                return true;
            }
            std::unique_lock lock(mutex_);
            if (!arrived_.wait_until(lock, deadline, [this] { return !calls_.empty(); })) {
                return done();
            }
        }
    }

private:
    std::function<void()> next() {
        std::lock_guard lock(mutex_);
        if (calls_.empty()) {
            return nullptr;
        }
        std::function<void()> call = std::move(calls_.front());
        calls_.pop_front();
        return call;
    }

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> calls_;
};

}  // namespace vantle::testing
