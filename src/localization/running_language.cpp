#include "localization/localization.h"
#include "localization/preferred_languages.h"
#include "services/standard_defaults.h"

// The process-wide language state. Each value is computed on first use, exactly once (function
// statics are initialised thread-safely), and never changes afterwards: a new language takes
// effect through a restart of the program.
namespace vantle::Localization {

const std::string& language() {
    static const std::string code = resolve(preferredLanguages());
    return code;
}

const StringTable& english() {
    static const StringTable englishTable = table("en");
    return englishTable;
}

const StringTable& selected() {
    static const StringTable selectedTable = table(language());
    return selectedTable;
}

std::string releaseDate(std::string_view dayMonthYear) {
    return releaseDate(dayMonthYear, language());
}

void savePreference(std::string_view code) {
    savePreference(code, standardDefaults());
}

}  // namespace vantle::Localization
