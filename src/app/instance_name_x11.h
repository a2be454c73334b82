#pragma once

#include <optional>
#include <string>

namespace vantle {

// The name under which the running copy of the program answers on this machine: one copy per
// user and X display, so that a second start finds the first instead of taking the keys and
// the tray a second time. The screen number of the display does not count (":0" and ":0.0"
// are the same session); a missing display gives the name of the default one.
std::string instanceName(unsigned int userId, std::optional<std::string> display);

// What a second start sends to the running copy, and what that copy answers once it has
// brought its settings window forward.
inline constexpr const char* kReopenRequest = "reopen\n";
inline constexpr const char* kReopenDone = "done\n";

}  // namespace vantle
