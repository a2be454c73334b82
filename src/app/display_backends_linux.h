#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/display_backends.h"
#include "services/user_defaults.h"

struct xcb_connection_t;

namespace vantle {

// Whether an X server answers at DISPLAY. Asking first keeps the toolkit from ending the process
// when there is none.
bool xServerReachable();

// The displays of the X server behind the toolkit's own connection: RandR screens, shade windows
// or gamma ramps, and the backlight and monitor controls. arguments are the program's.
std::unique_ptr<DisplayBackends> makeX11DisplayBackends(xcb_connection_t* connection, UserDefaults& defaults,
                                                        const std::vector<std::string>& arguments);

// No window system: no screens and no shades, so that the check modes still run.
std::unique_ptr<DisplayBackends> makeHeadlessDisplayBackends(UserDefaults& defaults,
                                                             const std::vector<std::string>& arguments);

}  // namespace vantle
