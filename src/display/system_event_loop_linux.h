#pragma once

#include <memory>

class QSocketNotifier;
typedef struct sd_event sd_event;

namespace vantle {

// An sd-event loop run by the toolkit's event loop: whatever is attached to it (a D-Bus
// connection, a device monitor) is served on the main thread, when its file descriptor has
// something, and costs nothing while it has not. Main thread only; the toolkit's event loop must
// run.
class SystemEventLoop {
public:
    SystemEventLoop();
    ~SystemEventLoop();
    SystemEventLoop(const SystemEventLoop&) = delete;
    SystemEventLoop& operator=(const SystemEventLoop&) = delete;

    // Null when no loop could be made.
    sd_event* event() const { return event_; }

    // Serves everything that is ready, without waiting. Also to be called once after attaching
    // sources, so that the loop arms their timers and learns what they wait for.
    void dispatch();

private:
    sd_event* event_ = nullptr;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace vantle
