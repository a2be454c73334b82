#include "display/sleep_watch_linux.h"

#include <systemd/sd-bus.h>

namespace vantle {
namespace {

int onPrepareForSleep(sd_bus_message* message, void* resumed, sd_bus_error*) {
    int goingToSleep = 0;
    if (sd_bus_message_read(message, "b", &goingToSleep) < 0) {
        return 0;
    }
    if (goingToSleep == 0) {
        (*static_cast<std::function<void()>*>(resumed))();
    }
    return 0;
}

}  // namespace

SleepWatch::SleepWatch(std::function<void()> resumed) : resumed_(std::move(resumed)) {
    if (loop_.event() == nullptr || sd_bus_open_system(&bus_) < 0) {
        bus_ = nullptr;
        return;
    }
    // Asynchronous throughout: the connection's authentication and the match's registration
    // are carried on by the loop, so a system bus that is slow to answer never holds the start.
    if (sd_bus_attach_event(bus_, loop_.event(), 0) < 0 ||
        sd_bus_match_signal_async(bus_, &match_, "org.freedesktop.login1", "/org/freedesktop/login1",
                                  "org.freedesktop.login1.Manager", "PrepareForSleep", &onPrepareForSleep, nullptr,
                                  &resumed_) < 0) {
        return;
    }
    loop_.dispatch();
}

SleepWatch::~SleepWatch() {
    // The match goes first, so that no callback can reach this object any more.
    sd_bus_slot_unref(match_);
    if (bus_ != nullptr) {
        sd_bus_detach_event(bus_);
        sd_bus_close_unref(bus_);
    }
}

}  // namespace vantle
