#include "display/system_event_loop_linux.h"

#include <systemd/sd-event.h>

#include <QSocketNotifier>

namespace vantle {

SystemEventLoop::SystemEventLoop() {
    if (sd_event_new(&event_) < 0) {
        event_ = nullptr;
        return;
    }
    // The loop's own descriptor stands for all of its sources and timers at once.
    notifier_ = std::make_unique<QSocketNotifier>(sd_event_get_fd(event_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { dispatch(); });
}

SystemEventLoop::~SystemEventLoop() {
    notifier_.reset();
    if (event_ != nullptr) {
        sd_event_unref(event_);
    }
}

void SystemEventLoop::dispatch() {
    if (event_ == nullptr) {
        return;
    }
    // One pass serves one source; the rest may be ready already. A timeout of 0 never waits.
    while (sd_event_run(event_, 0) > 0) {
    }
}

}  // namespace vantle
