#include "localization/preferred_languages.h"

#include <cstdlib>

#include "services/standard_defaults.h"

namespace vantle {

// Linux has no list of preferred languages of its own: the locale variables of the process's
// environment are the user's choice.
std::vector<std::string> preferredLanguages() {
    return preferredLanguages(standardDefaults(), [](const char* name) -> std::optional<std::string> {
        if (const char* value = std::getenv(name)) {
            return std::string(value);
        }
        return std::nullopt;
    });
}

}  // namespace vantle
