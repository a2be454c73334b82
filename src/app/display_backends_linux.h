#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/display_backends.h"
#include "display/ddc/ddc_linux.h"
#include "services/user_defaults.h"

struct xcb_connection_t;

namespace vantle {

// Whether an X server answers at DISPLAY. Asking first keeps the toolkit from ending the process
// when there is none.
bool xServerReachable();

// What the X11 displays are made with besides the X connection. Left empty, the machine's own.
struct X11DisplayOptions {
    // The DDC/CI monitors: the library that reaches them and how patiently.
    std::optional<ddc::DdcBrightness::Options> ddc;
};

// The displays of the X server behind the toolkit's own connection: RandR screens, shade windows
// or gamma ramps, and the backlight and monitor controls. arguments are the program's.
//
// They follow the displays while the program runs: a monitor attached is looked for on the DDC/CI
// buses (the X server's notices of its outputs and the kernel's of its connectors start the
// search, besides the toolkit's change of screens), one removed has its thread stopped, and after
// the machine wakes from sleep the monitors are opened anew and the software dimming is laid again.
std::unique_ptr<DisplayBackends> makeX11DisplayBackends(xcb_connection_t* connection, UserDefaults& defaults,
                                                        const std::vector<std::string>& arguments,
                                                        X11DisplayOptions options = {});

// No window system: no screens and no shades, so that the check modes still run.
std::unique_ptr<DisplayBackends> makeHeadlessDisplayBackends(UserDefaults& defaults,
                                                             const std::vector<std::string>& arguments);

}  // namespace vantle
