#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "dock/command_error.h"
#include "services/bundle.h"

namespace vantle {

// Every separator is a copy of the template application under this name, in a folder of its
// own; the name is the same for all of them.
inline constexpr std::string_view kSeparatorBundleName = "S\xC3\xA9parateur.app";
// The artwork drawn for separators today; separators drawn with another version are redrawn.
inline constexpr int kSeparatorArtworkVersion = 6;

// "Dark" when the desktop's interface style is exactly "Dark", otherwise "Light" (also when
// there is none).
std::string separatorTheme(const std::optional<std::string>& interfaceStyle);

// The folder that holds the separators: "Vantle Control/Separators" in the user's folder of
// application data.
std::filesystem::path separatorRoot(const std::filesystem::path& applicationSupport);

// The bundle identifier of the separator in the folder named uuid.
std::string separatorBundleIdentifier(std::string_view uuid);

// A fresh random UUID (version 4) in its upper-case 36-character form.
std::string makeUuid();

// The template application among the program's resources, or empty when it is missing.
std::optional<std::filesystem::path> separatorTemplate(const Bundle& bundle);

// The separator image of the theme ("Separator" + theme + ".png"), or empty when missing.
std::optional<std::filesystem::path> separatorArtwork(const Bundle& bundle, std::string_view theme);

// Whether the bytes are a PNG image with a size: the signature, then an image header chunk
// with a width and height other than 0.
bool isReadablePng(std::string_view bytes);

// Creates root/uuid/Séparateur.app as a copy of the template with its own bundle identifier
// (the only key of its Info.plist that changes) and returns its path. Everything made before a
// failure stays on disk.
Expected<std::filesystem::path> createSeparatorBundle(const std::filesystem::path& templatePath,
                                                      const std::filesystem::path& root, const std::string& uuid);

}  // namespace vantle
