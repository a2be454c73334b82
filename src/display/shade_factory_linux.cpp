#include "display/shade_factory_linux.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "display/shade_window_qt.h"

namespace vantle {

LinuxShadeFactory::LinuxShadeFactory(xcb_connection_t* connection, X11ScreenSystem& screens,
                                     SavedGammaRamps& savedRamps)
    : connection_(connection), screens_(screens), savedRamps_(savedRamps) {}

bool LinuxShadeFactory::compositorRunning() {
    const char* name = "_NET_WM_CM_S0";
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
                              nullptr),
        &std::free);
    if (!atom) {
        return false;
    }
    std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, atom->atom), nullptr),
        &std::free);
    return owner && owner->owner != XCB_NONE;
}

std::unique_ptr<ShadePanel> LinuxShadeFactory::makePanel(std::uint32_t display, const ScreenFrame&) {
    if (compositorRunning()) {
        return std::make_unique<ShadeWindow>();
    }
    const X11ScreenSystem::Output output = screens_.outputOf(display);
    if (output.crtc == 0) {
        return nullptr;
    }
    return std::make_unique<GammaShade>(connection_, output.crtc, output.name, savedRamps_);
}

void restoreSavedGammaRamps(xcb_connection_t* connection, X11ScreenSystem& screens, SavedGammaRamps& savedRamps) {
    for (const std::string& name : savedRamps.outputs()) {
        const std::optional<X11ScreenSystem::Output> output = screens.outputNamed(name);
        if (!output || output->crtc == 0) {
            continue;
        }
        const std::optional<GammaRamp> ramp = savedRamps.load(name);
        const std::optional<GammaRamp> current = readGammaRamp(connection, output->crtc);
        // A ramp of another size belongs to other hardware; it cannot be put back.
        if (ramp && current && ramp->red.size() == current->red.size()) {
            writeGammaRamp(connection, output->crtc, *ramp);
        }
        savedRamps.remove(name);
    }
}

}  // namespace vantle
