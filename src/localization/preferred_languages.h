#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "services/user_defaults.h"

namespace vantle {

// Reads one environment variable; empty when it is unset.
using EnvironmentLookup = std::function<std::optional<std::string>(const char* name)>;

// The user's preferred languages, most preferred first: the language saved in the settings
// ("AppleLanguages") wins, then LANGUAGE (a colon-separated list), LC_ALL, LC_MESSAGES and LANG.
// POSIX locale names lose their codeset and modifier ("fr_FR.UTF-8@euro" gives "fr_FR"), and the
// "C" and "POSIX" locales, which name no language, are left out.
std::vector<std::string> preferredLanguages(const UserDefaults& defaults, const EnvironmentLookup& environment);

// The same for the running program, as its platform knows them. On Linux: its own settings and
// its environment.
std::vector<std::string> preferredLanguages();

}  // namespace vantle
