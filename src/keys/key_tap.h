#pragma once

#include <functional>

#include "keys/media_keys.h"

namespace vantle {

// Takes the keyboard's media keys away from the rest of the desktop and reports them. Main
// thread only. The callback only receives decoded events; it must not touch devices or displays
// itself but queue the work, so that the tap never holds the keyboard up.
class KeyTap {
public:
    virtual ~KeyTap() = default;

    // Takes the keys. False when it cannot, because another program holds one of them: then
    // nothing is taken at all.
    virtual bool start(std::function<void(const MediaKeyEvent&)> onKey) = 0;
    // Gives the keys back. Does nothing when they are not taken.
    virtual void stop() = 0;
    virtual bool running() const = 0;
    // Whether the keys are taken, counting a tap that the system switched off for a while
    // (running() is false then, and start() only switches it back on).
    virtual bool installed() const { return running(); }
};

}  // namespace vantle
