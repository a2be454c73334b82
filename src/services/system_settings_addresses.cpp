#include "services/system_settings_addresses.h"

namespace vantle {

SystemSettingsAddress systemSettingsAddress(SettingsPlace place) {
    using Kind = SystemSettingsAddress::Kind;
    switch (place) {
    case SettingsPlace::Displays:
        return {Kind::url, "x-apple.systempreferences:com.apple.Displays-Settings.extension"};
    case SettingsPlace::Sound:
        return {Kind::applicationPath, "/System/Applications/Utilities/Audio MIDI Setup.app"};
    case SettingsPlace::Keyboard:
        return {Kind::url, "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"};
    case SettingsPlace::StartupApplications:
        return {Kind::url, "x-apple.systempreferences:com.apple.LoginItems-Settings.extension"};
    }
    // Every place is handled above; a value outside the enumeration opens the settings' front page.
    return {Kind::url, "x-apple.systempreferences:"};
}

}  // namespace vantle
