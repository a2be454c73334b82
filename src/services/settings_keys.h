#pragma once

#include <string_view>

namespace vantle::settings {

// The keys of the user's settings. Their names are shared with the macOS build, where they
// live in the application's user-defaults domain, so a settings file means the same on both.
inline constexpr std::string_view kLinked = "linked";
inline constexpr std::string_view kSoftwareBrightness = "softwareBrightness";
inline constexpr std::string_view kMutedLevels = "mutedLevels";
inline constexpr std::string_view kKeyboardStatus = "keyboardStatus";
inline constexpr std::string_view kKeyboardSeenBuild = "keyboardSeenBuild";
inline constexpr std::string_view kKeyboardPendingRepairBuild = "keyboardPendingRepairBuild";
inline constexpr std::string_view kLoginSetupDone = "loginSetupDone";
inline constexpr std::string_view kLanguagePreference = "VantleLanguagePreference";
inline constexpr std::string_view kAppleLanguages = "AppleLanguages";
inline constexpr std::string_view kSeparatorPaths = "separatorPaths";
inline constexpr std::string_view kSeparatorTheme = "separatorTheme";
inline constexpr std::string_view kSeparatorArtworkVersion = "separatorArtworkVersion";
inline constexpr std::string_view kDockExpectedOrder = "dockExpectedOrder";
// A system-wide key on macOS; read, never written.
inline constexpr std::string_view kAppleInterfaceStyle = "AppleInterfaceStyle";

}  // namespace vantle::settings
