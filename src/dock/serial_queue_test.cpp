#include "dock/serial_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <vector>

namespace vantle {
namespace {

TEST(SerialQueueTest, JobsRunInOrderOneAtATimeOffTheCallingThread) {
    SerialQueue queue("test");
    std::vector<int> order;
    std::atomic<int> running = 0;
    std::atomic<bool> overlapped = false;
    std::atomic<bool> onCaller = false;
    const auto caller = std::this_thread::get_id();
    for (int index = 0; index < 20; ++index) {
        queue.async([&, index] {
            if (++running > 1) {
                overlapped = true;
            }
            if (std::this_thread::get_id() == caller) {
                onCaller = true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            order.push_back(index);
            --running;
        });
    }
    queue.waitUntilIdle();
    ASSERT_EQ(order.size(), 20u);
    for (int index = 0; index < 20; ++index) {
        EXPECT_EQ(order[static_cast<std::size_t>(index)], index);
    }
    EXPECT_FALSE(overlapped);
    EXPECT_FALSE(onCaller);
}

TEST(SerialQueueTest, WaitingOnAnIdleQueueReturnsAtOnce) {
    SerialQueue queue("test");
    queue.waitUntilIdle();
}

TEST(SerialQueueTest, DestructionFinishesTheRunningJobAndDropsTheRest) {
    std::atomic<int> finished = 0;
    std::atomic<bool> started = false;
    {
        SerialQueue queue("test");
        queue.async([&] {
            started = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            ++finished;
        });
        queue.async([&] { finished += 100; });
        while (!started) {
            std::this_thread::yield();
        }
    }
    EXPECT_EQ(finished, 1);
}

}  // namespace
}  // namespace vantle
