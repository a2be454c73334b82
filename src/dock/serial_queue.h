#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace vantle {

// A work queue with one thread of its own: jobs run one after another, in the order they were
// added, never two at once, and never on the thread that added them.
class SerialQueue {
public:
    explicit SerialQueue(std::string label);
    // Jobs that have not started yet are dropped; a running one is waited for, so that no job
    // is cut off half-way.
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    const std::string& label() const { return label_; }

    // Adds a job and returns at once. Any thread.
    void async(std::function<void()> job);

    // Blocks until every job added so far has ended. Not from a job of this queue.
    void waitUntilIdle();

private:
    void work();

    std::string label_;
    std::mutex mutex_;
    std::condition_variable jobAdded_;
    std::condition_variable becameIdle_;
    std::deque<std::function<void()>> jobs_;
    bool busy_ = false;
    bool stopping_ = false;
    std::thread thread_;  // last, so that it starts after everything it uses exists
};

}  // namespace vantle
