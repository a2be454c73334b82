#pragma once

#include <map>
#include <string>
#include <vector>

#include "services/user_defaults.h"

namespace vantle {

// For each output uid muted by the program, that output's channel levels just before the mute,
// in the order of its volume elements. Empty means nothing is muted by us.
using SavedLevels = std::map<std::string, std::vector<float>>;

// Reads "mutedLevels". Anything but a dictionary of string keys to arrays of numbers reads as
// empty, as a whole: a half-understood record must not restore some outputs and forget others.
SavedLevels loadSavedLevels(const UserDefaults& defaults);

// Replaces "mutedLevels" whole; an empty record is stored as an empty dictionary. Levels are
// stored as doubles, so a float survives the round trip exactly.
bool storeSavedLevels(UserDefaults& defaults, const SavedLevels& saved);

}  // namespace vantle
