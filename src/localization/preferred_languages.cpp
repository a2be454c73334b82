#include "localization/preferred_languages.h"

#include <cstdlib>
#include <sstream>

#include "services/settings_keys.h"
#include "services/standard_defaults.h"

namespace vantle {
namespace {

void addLocaleName(std::vector<std::string>& languages, std::string name) {
    name = name.substr(0, name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX") {
        return;
    }
    languages.push_back(std::move(name));
}

}  // namespace

std::vector<std::string> preferredLanguages(const UserDefaults& defaults, const EnvironmentLookup& environment) {
    std::vector<std::string> languages;
    if (std::optional<std::vector<std::string>> saved = defaults.stringArray(settings::kAppleLanguages)) {
        languages = *saved;
    }
    if (std::optional<std::string> list = environment("LANGUAGE")) {
        std::istringstream stream(*list);
        for (std::string item; std::getline(stream, item, ':');) {
            addLocaleName(languages, item);
        }
    }
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (std::optional<std::string> value = environment(variable)) {
            addLocaleName(languages, *value);
        }
    }
    return languages;
}

std::vector<std::string> preferredLanguages() {
    return preferredLanguages(standardDefaults(), [](const char* name) -> std::optional<std::string> {
        if (const char* value = std::getenv(name)) {
            return std::string(value);
        }
        return std::nullopt;
    });
}

}  // namespace vantle
