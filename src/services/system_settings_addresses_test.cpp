#include "services/system_settings_addresses.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

using Kind = SystemSettingsAddress::Kind;

TEST(SystemSettingsAddressesTest, DisplaysOpenTheDisplaysPage) {
    EXPECT_EQ(systemSettingsAddress(SettingsPlace::Displays),
              (SystemSettingsAddress{Kind::url, "x-apple.systempreferences:com.apple.Displays-Settings.extension"}));
}

TEST(SystemSettingsAddressesTest, SoundOpensAudioMidiSetupWhereCombinedOutputsAreMade) {
    EXPECT_EQ(systemSettingsAddress(SettingsPlace::Sound),
              (SystemSettingsAddress{Kind::applicationPath, "/System/Applications/Utilities/Audio MIDI Setup.app"}));
}

TEST(SystemSettingsAddressesTest, KeyboardOpensTheAccessibilityPrivacyPage) {
    EXPECT_EQ(systemSettingsAddress(SettingsPlace::Keyboard),
              (SystemSettingsAddress{Kind::url,
                                     "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"}));
}

TEST(SystemSettingsAddressesTest, StartupApplicationsOpenTheLoginItemsPage) {
    EXPECT_EQ(systemSettingsAddress(SettingsPlace::StartupApplications),
              (SystemSettingsAddress{Kind::url, "x-apple.systempreferences:com.apple.LoginItems-Settings.extension"}));
}

TEST(SystemSettingsAddressesTest, EveryPageIsASystemSettingsAddress) {
    for (SettingsPlace place : {SettingsPlace::Displays, SettingsPlace::Keyboard, SettingsPlace::StartupApplications}) {
        const SystemSettingsAddress address = systemSettingsAddress(place);
        EXPECT_EQ(address.target.rfind("x-apple.systempreferences:", 0), 0u) << address.target;
    }
}

}  // namespace
}  // namespace vantle
