#pragma once

#include <functional>

#include "display/system_event_loop_linux.h"

typedef struct sd_bus sd_bus;
typedef struct sd_bus_slot sd_bus_slot;

namespace vantle {

// Tells when the machine woke from suspend or hibernation: logind announces PrepareForSleep(false)
// on the system bus (DBUS_SYSTEM_BUS_ADDRESS when set) once it is back. Only logind's own
// announcements count. Without a system bus or logind nothing is ever told, and nothing fails.
// Main thread only; the toolkit's event loop must run.
class SleepWatch {
public:
    // resumed runs on the main thread after each wake.
    explicit SleepWatch(std::function<void()> resumed);
    ~SleepWatch();
    SleepWatch(const SleepWatch&) = delete;
    SleepWatch& operator=(const SleepWatch&) = delete;

private:
    std::function<void()> resumed_;
    // Declared first, so that it goes last: the connection is attached to it.
    SystemEventLoop loop_;
    sd_bus* bus_ = nullptr;
    sd_bus_slot* match_ = nullptr;
};

}  // namespace vantle
