#pragma once

#include <string>

#include "services/workspace.h"

namespace vantle {

// Where macOS keeps each place the program sends the user to: a page of the System Settings
// application, opened by its address, or an application of its own, opened by its path.
struct SystemSettingsAddress {
    enum class Kind { url, applicationPath };
    Kind kind = Kind::url;
    std::string target;

    bool operator==(const SystemSettingsAddress&) const = default;
};

// The address of a place on macOS. Combined outputs are made in the Audio MIDI Setup
// application, not in the settings; the keys are taken with the Accessibility permission, so
// the keyboard's place is that page of the privacy settings.
SystemSettingsAddress systemSettingsAddress(SettingsPlace place);

}  // namespace vantle
