#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/display_backends.h"
#include "services/user_defaults.h"

namespace vantle {

// The displays of the window server: AppKit's screens, shade panels, and the displays' own
// brightness through DisplayServices. arguments are the program's. Made after the toolkit's
// application object, which AppKit's screens need.
std::unique_ptr<DisplayBackends> makeMacDisplayBackends(UserDefaults& defaults,
                                                        const std::vector<std::string>& arguments);

}  // namespace vantle
