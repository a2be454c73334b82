#pragma once

#include <string_view>

namespace vantle::settings {

// Settings the updater keeps for itself (macOS leaves them to its update framework).
// Whether checks run by themselves, at most once a day (boolean; off when absent).
inline constexpr std::string_view kAutomaticUpdateChecks = "automaticUpdateChecks";
// When the last check ended, whatever its outcome (date).
inline constexpr std::string_view kLastUpdateCheckTime = "lastUpdateCheckTime";

}  // namespace vantle::settings
