#include "dock/serial_queue.h"

namespace vantle {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)), thread_([this] { work(); }) {}

SerialQueue::~SerialQueue() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
        jobs_.clear();
    }
    jobAdded_.notify_one();
    thread_.join();
}

void SerialQueue::async(std::function<void()> job) {
    {
        std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    jobAdded_.notify_one();
}

void SerialQueue::waitUntilIdle() {
    std::unique_lock lock(mutex_);
    becameIdle_.wait(lock, [this] { return jobs_.empty() && !busy_; });
}

void SerialQueue::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        jobAdded_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
        if (stopping_) {
            break;
        }
        std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        busy_ = true;
        lock.unlock();
        job();
        // The job's captures go before the queue reports idle, so that a waiter sees them gone.
        job = nullptr;
        lock.lock();
        busy_ = false;
        if (jobs_.empty()) {
            becameIdle_.notify_all();
        }
    }
    busy_ = false;
    becameIdle_.notify_all();
}

}  // namespace vantle
