#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "display/gamma_shade_x11.h"

struct xcb_connection_t;

namespace vantle {

// The ramps the gamma shades hold their CRTCs at while they dim, so that a ramp someone else
// changed meanwhile can be put back: a colour-temperature tool, a game or a screen locker that
// resets the ramp, or the X server itself after the machine slept. Another program's ramp is
// overwritten at most once per check, so a program that keeps setting its own is not fought in a
// loop; and a display at full brightness holds nothing, so whatever ramp it shows stays.
// Main thread only, on the toolkit's X connection.
class GammaKeeper {
public:
    explicit GammaKeeper(xcb_connection_t* connection) : connection_(connection) {}

    // The CRTC is to show ramp from now on.
    void hold(std::uint32_t crtc, GammaRamp ramp);
    // The CRTC is no longer held; its ramp is left as it is.
    void release(std::uint32_t crtc);

    // Reads back every held CRTC's ramp, all requests sent before the first answer is awaited,
    // and writes the held ramp again where the CRTC shows another one. Returns the number of
    // CRTCs written. Costs nothing when no CRTC is held.
    std::size_t restoreChanged();

private:
    xcb_connection_t* connection_;
    std::map<std::uint32_t, GammaRamp> held_;
};

}  // namespace vantle
