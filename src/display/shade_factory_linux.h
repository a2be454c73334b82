#pragma once

#include "display/gamma_shade_x11.h"
#include "display/screens_x11.h"
#include "display/shade.h"

struct xcb_connection_t;

namespace vantle {

// Chooses how to dim each display on X11: a translucent black window when a compositor runs,
// else the gamma ramp of the display's own CRTC. A display without a CRTC of its own cannot be
// dimmed without a compositor: no panel is made for it, so the write reports failure instead
// of covering the screen in opaque black.
class LinuxShadeFactory final : public ShadeFactory {
public:
    LinuxShadeFactory(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps);

    std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) override;

    // Whether a compositing manager owns the screen's _NET_WM_CM_S0 selection right now.
    bool compositorRunning();

private:
    xcb_connection_t* connection_;
    X11ScreenSystem& screens_;
    SavedGammaRamps& savedRamps_;
};

// Puts back the ramps of displays that were still dimmed when the program last ended, and
// forgets them. Ramps of outputs that are not attached now stay for a later start.
void restoreSavedGammaRamps(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps);

}  // namespace vantle
