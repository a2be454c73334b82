#pragma once

#include <cstdint>
#include <memory>

#include "display/screen_system.h"

namespace vantle {

// A black, partly transparent, click-through cover over one whole screen, which dims a display
// that has no brightness control of its own. Main thread only.
class ShadePanel {
public:
    virtual ~ShadePanel() = default;
    // Lays the panel over frame, above other windows, ignoring the mouse, without a shadow.
    virtual void setUp(const ScreenFrame& frame) = 0;
    // 0 is fully transparent; the darkest shade used is 0.85.
    virtual void setAlpha(double alpha) = 0;
    virtual void orderOut() = 0;
    virtual void orderFrontRegardless() = 0;
    // Lays a shown panel over everything again, as it was: after the machine woke up, other
    // windows may stand above it and its dimming may have been undone. A hidden panel stays
    // hidden.
    virtual void raise() {}
};

// Makes the shade panels of this platform.
class ShadeFactory {
public:
    virtual ~ShadeFactory() = default;
    virtual std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) = 0;

    // Puts back, once, the dimming of shown shades that another program undid since the last
    // call (a gamma ramp it reset, say). For a periodic check; where nothing can undo a shade,
    // it does nothing.
    virtual void keepDimming() {}
};

}  // namespace vantle
