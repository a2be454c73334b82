#pragma once

#include <functional>

#include "keys/key_tap.h"

// Core Foundation's opaque objects behind the tap, named here without the system headers so
// that the rest of the program never sees an Apple type.
struct __CFMachPort;
struct __CFRunLoopSource;

namespace vantle {

struct MacKeyTapCallback;

// The media keys on macOS as an active event tap on the window server's keyboard events, run
// by the main run loop (which the toolkit's event loop drives). The system only lets a process
// the user trusts for accessibility create one; without that trust start() fails.
class MacKeyTap final : public KeyTap {
public:
    MacKeyTap() = default;
    MacKeyTap(const MacKeyTap&) = delete;
    MacKeyTap& operator=(const MacKeyTap&) = delete;
    ~MacKeyTap() override;

    bool start(std::function<void(const MediaKeyEvent&)> onKey) override;
    void stop() override;
    // The tap exists and the system has not switched it off.
    bool running() const override;
    bool installed() const override { return tap_ != nullptr; }

private:
    friend struct MacKeyTapCallback;

    __CFMachPort* tap_ = nullptr;
    __CFRunLoopSource* source_ = nullptr;
    std::function<void(const MediaKeyEvent&)> onKey_;
};

}  // namespace vantle
