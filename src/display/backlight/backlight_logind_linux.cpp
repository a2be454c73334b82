#include "display/backlight/backlight_logind_linux.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <memory>

namespace vantle::backlight {
namespace {

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
struct MessageUnref {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
struct SlotUnref {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

struct PendingCall {
    bool answered = false;
    bool succeeded = false;
};

int onReply(sd_bus_message* reply, void* userData, sd_bus_error* /*error*/) {
    auto* call = static_cast<PendingCall*>(userData);
    call->answered = true;
    call->succeeded = sd_bus_message_is_method_error(reply, nullptr) == 0;
    return 0;
}

}  // namespace

bool setBrightnessThroughLogind(const std::string& backlightName, std::uint32_t value,
                                std::chrono::milliseconds timeout) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + timeout;

    // A connection of its own per call: brightness changes are rare enough, and nothing is left
    // behind to go stale when the bus or logind restarts.
    sd_bus* rawBus = nullptr;
    if (sd_bus_open_system(&rawBus) < 0) {
        return false;
    }
    const std::unique_ptr<sd_bus, BusCloser> bus(rawBus);

    sd_bus_message* rawMessage = nullptr;
    if (sd_bus_message_new_method_call(bus.get(), &rawMessage, "org.freedesktop.login1",
                                       "/org/freedesktop/login1/session/auto", "org.freedesktop.login1.Session",
                                       "SetBrightness") < 0) {
        return false;
    }
    const std::unique_ptr<sd_bus_message, MessageUnref> message(rawMessage);
    if (sd_bus_message_append(message.get(), "ssu", "backlight", backlightName.c_str(), value) < 0) {
        return false;
    }

    // The call is sent asynchronously and the connection driven here until the deadline, because
    // sd_bus_call() waits for the connection's authentication without any limit of its own, and a
    // stuck bus must not freeze the interface.
    PendingCall call;
    sd_bus_slot* rawSlot = nullptr;
    const auto timeoutMicroseconds = std::chrono::duration_cast<std::chrono::microseconds>(timeout).count();
    if (sd_bus_call_async(bus.get(), &rawSlot, message.get(), onReply, &call,
                          static_cast<std::uint64_t>(timeoutMicroseconds)) < 0) {
        return false;
    }
    // Released before the connection, so that no callback can reach `call` after this returns.
    const std::unique_ptr<sd_bus_slot, SlotUnref> slot(rawSlot);

    while (!call.answered) {
        const int processed = sd_bus_process(bus.get(), nullptr);
        if (processed < 0) {
            return false;
        }
        if (processed > 0) {
            continue;
        }
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        const int waited = sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left.count()));
        if (waited < 0 && waited != -EINTR) {
            return false;
        }
    }
    return call.succeeded;
}

}  // namespace vantle::backlight
