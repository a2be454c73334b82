#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace vantle::testing {

// The main thread's event loop, for tests: work posted from any thread runs on the thread that
// runs the loop, in the order posted, while the loop runs.
class TestMainLoop {
public:
    void post(std::function<void()> work) {
        {
            std::lock_guard lock(mutex_);
            queue_.push_back(std::move(work));
        }
        wake_.notify_one();
    }

    std::function<void(std::function<void()>)> poster() {
        return [this](std::function<void()> work) { post(std::move(work)); };
    }

    // Runs posted work until done() holds (true) or the time is up (false). done() may watch
    // things that change on other threads: it is asked again at least every 10 ms.
    bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        while (!done()) {
            const auto now = std::chrono::steady_clock::now();
            if (now >= deadline) {
                return false;
            }
            std::function<void()> work;
            {
                std::unique_lock lock(mutex_);
                const auto until = std::min(deadline, now + std::chrono::milliseconds(10));
                if (!wake_.wait_until(lock, until, [this] { return !queue_.empty(); })) {
                    continue;
                }
                work = std::move(queue_.front());
                queue_.pop_front();
            }
            work();
        }
        return true;
    }

    // Runs posted work for the given time.
    void runFor(std::chrono::milliseconds duration) {
        runUntil([] { return false; }, duration);
    }

private:
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> queue_;
};

}  // namespace vantle::testing
