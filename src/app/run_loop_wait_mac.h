#pragma once

#include <chrono>
#include <functional>

namespace vantle {

// Lets the calling thread's run loop handle its sources (notifications from other processes,
// the workspace's answers) until done() is true or the limit has passed; true when done() is.
// For the moments before the toolkit's event loop runs, or while it must wait for an answer
// that arrives through the run loop itself.
bool runLoopUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

}  // namespace vantle
