#include "localization/preferred_languages.h"

#include <sstream>

#include "services/settings_keys.h"

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

}  // namespace vantle
