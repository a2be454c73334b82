#pragma once

#include <memory>

#include "display/screen_system.h"
#include "keys/osd_layout.h"

namespace vantle {

// One panel of the on-screen display on one screen. Main thread only.
class OsdPanel {
public:
    virtual ~OsdPanel() = default;
    virtual void orderOut() = 0;
};

// Makes the panels of this platform: borderless, click-through, never focused, above
// full-screen windows, shown at once without activating the program.
class OsdPanelFactory {
public:
    virtual ~OsdPanelFactory() = default;
    virtual std::unique_ptr<OsdPanel> show(const ScreenFrame& frame, const OsdContent& content) = 0;
};

}  // namespace vantle
