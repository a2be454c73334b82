#include "ui/desktop_scheme_linux.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string>
#include <vector>

#include "services/key_file.h"

namespace vantle {
namespace {

std::string lowercase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool namesDark(std::string_view name) {
    return lowercase(name).find("dark") != std::string::npos;
}

std::optional<bool> truth(std::string_view value) {
    const std::string word = lowercase(value);
    if (word == "1" || word == "true" || word == "yes") {
        return true;
    }
    if (word == "0" || word == "false" || word == "no") {
        return false;
    }
    return std::nullopt;
}

// "r,g,b" with each part 0..255; empty for anything else.
std::optional<std::vector<int>> rgb(std::string_view text) {
    std::vector<int> parts;
    while (true) {
        const std::size_t comma = text.find(',');
        const std::string_view part = trimmedOfBlanks(text.substr(0, comma));
        int value = -1;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
        if (error != std::errc() || end != part.data() + part.size() || value < 0 || value > 255) {
            return std::nullopt;
        }
        parts.push_back(value);
        if (comma == std::string_view::npos) {
            break;
        }
        text.remove_prefix(comma + 1);
    }
    if (parts.size() != 3 && parts.size() != 4) {
        return std::nullopt;
    }
    return parts;
}

}  // namespace

std::optional<bool> gtkSettingsPreferDark(std::string_view settingsIni) {
    const std::optional<std::string> prefers = keyFileValue(settingsIni, "Settings", "gtk-application-prefer-dark-theme");
    if (prefers && truth(*prefers) == true) {
        return true;
    }
    if (const std::optional<std::string> theme = keyFileValue(settingsIni, "Settings", "gtk-theme-name");
        theme && !theme->empty()) {
        return namesDark(*theme);
    }
    return prefers ? truth(*prefers) : std::nullopt;
}

std::optional<bool> gtkThemeVariablePrefersDark(std::string_view theme) {
    theme = trimmedOfBlanks(theme);
    if (theme.empty()) {
        return std::nullopt;
    }
    return namesDark(theme);
}

std::optional<bool> kdeGlobalsPreferDark(std::string_view kdeGlobals) {
    if (const std::optional<std::string> background = keyFileValue(kdeGlobals, "Colors:Window", "BackgroundNormal")) {
        if (const std::optional<std::vector<int>> colour = rgb(*background)) {
            // The same weighting of the channels as the eye's, as a toolkit's lightness has it.
            const int lightness = ((*colour)[0] * 299 + (*colour)[1] * 587 + (*colour)[2] * 114) / 1000;
            return lightness < 128;
        }
    }
    if (const std::optional<std::string> scheme = keyFileValue(kdeGlobals, "General", "ColorScheme");
        scheme && !scheme->empty()) {
        return namesDark(*scheme);
    }
    return std::nullopt;
}

}  // namespace vantle
