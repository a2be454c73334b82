#pragma once

#include <functional>

#include "display/system_event_loop_linux.h"

typedef struct sd_device sd_device;
typedef struct sd_device_monitor sd_device_monitor;

namespace vantle {

// Tells when the kernel reports a change at a display connector: the DRM devices' events that
// udev passes on, such as a monitor plugged in or switched on. The X server learns of the same
// change and tells its clients, but the monitor's DDC/CI bus may only answer later, so this is a
// second chance to find it. Without udev's events (a container, say) nothing is ever told, and
// nothing fails. Main thread only; the toolkit's event loop must run.
class ConnectorWatch {
public:
    // changed runs on the main thread after each event.
    explicit ConnectorWatch(std::function<void()> changed);
    ~ConnectorWatch();
    ConnectorWatch(const ConnectorWatch&) = delete;
    ConnectorWatch& operator=(const ConnectorWatch&) = delete;

private:
    static int onEvent(sd_device_monitor* monitor, sd_device* device, void* self);

    std::function<void()> changed_;
    // Declared first, so that it goes last: the monitor is attached to it.
    SystemEventLoop loop_;
    sd_device_monitor* monitor_ = nullptr;
};

}  // namespace vantle
