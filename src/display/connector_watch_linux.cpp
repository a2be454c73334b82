#include "display/connector_watch_linux.h"

#include <systemd/sd-device.h>

namespace vantle {

ConnectorWatch::ConnectorWatch(std::function<void()> changed) : changed_(std::move(changed)) {
    if (loop_.event() == nullptr || sd_device_monitor_new(&monitor_) < 0) {
        monitor_ = nullptr;
        return;
    }
    // The kernel filters by subsystem before anything reaches this process, so the events of
    // every other device cost nothing here.
    if (sd_device_monitor_filter_add_match_subsystem_devtype(monitor_, "drm", nullptr) < 0 ||
        sd_device_monitor_attach_event(monitor_, loop_.event()) < 0 ||
        sd_device_monitor_start(monitor_, &ConnectorWatch::onEvent, this) < 0) {
        return;
    }
    loop_.dispatch();
}

ConnectorWatch::~ConnectorWatch() {
    if (monitor_ != nullptr) {
        sd_device_monitor_stop(monitor_);
        sd_device_monitor_detach_event(monitor_);
        sd_device_monitor_unref(monitor_);
    }
}

int ConnectorWatch::onEvent(sd_device_monitor*, sd_device*, void* self) {
    static_cast<ConnectorWatch*>(self)->changed_();
    return 0;
}

}  // namespace vantle
