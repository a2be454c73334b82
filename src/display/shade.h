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
};

// Makes the shade panels of this platform.
class ShadeFactory {
public:
    virtual ~ShadeFactory() = default;
    virtual std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) = 0;
};

}  // namespace vantle
