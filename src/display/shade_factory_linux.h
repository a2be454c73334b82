#pragma once

#include <memory>
#include <set>

#include "display/compositor_watch_x11.h"
#include "display/gamma_keeper_x11.h"
#include "display/gamma_shade_x11.h"
#include "display/screens_x11.h"
#include "display/shade.h"

struct xcb_connection_t;

namespace vantle {

class SwitchingShade;

// Chooses how to dim each display on X11: a translucent black window when a compositor runs,
// else the gamma ramp of the display's own CRTC. A display without a CRTC of its own cannot be
// dimmed without a compositor: no panel is made for it, so the write reports failure instead
// of covering the screen in opaque black. When a compositor starts or stops, every live shade
// moves to the other way at the level it has.
class LinuxShadeFactory final : public ShadeFactory {
public:
    LinuxShadeFactory(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps);

    std::unique_ptr<ShadePanel> makePanel(std::uint32_t display, const ScreenFrame& frame) override;
    // Reads back the ramp of every CRTC dimmed now, one request each, and writes a ramp another
    // program replaced once more. Asks the X server nothing while no display is dimmed by ramp.
    void keepDimming() override;
    // Lays every shown shade over everything again, at the level it has: windows are raised and
    // ramps written again.
    void raiseShades();

private:
    std::unique_ptr<ShadePanel> makeFor(std::uint32_t display, bool composited);
    void compositorChanged(bool running);

    xcb_connection_t* connection_;
    X11ScreenSystem& screens_;
    SavedGammaRamps& savedRamps_;
    // What the gamma shades hold their CRTCs at; like the factory, it outlives every shade.
    GammaKeeper gammaKeeper_;
    // The shades made and not yet destroyed; each takes itself out as it goes.
    std::shared_ptr<std::set<SwitchingShade*>> live_ = std::make_shared<std::set<SwitchingShade*>>();
    CompositorWatch compositor_;
};

// Puts back the ramps of displays that were still dimmed when the program last ended, and
// forgets them. Ramps of outputs that are not attached now stay for a later start.
void restoreSavedGammaRamps(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps);

}  // namespace vantle
