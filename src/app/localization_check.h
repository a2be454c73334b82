#pragma once

#include <optional>
#include <string>

namespace vantle {

// Everything the localization self-check looks at, gathered from the running process.
struct LocalizationCheckInputs {
    std::string language;              // the running language
    std::optional<std::string> expectedLanguage;  // VANTLE_EXPECT_LANGUAGE, when set (even empty)
    std::size_t englishCount = 0;      // entries of the English table
    std::size_t selectedCount = 0;     // entries of the running language's table
    std::string versionText;           // "s073" formatted with a sample version
    std::string updaterLocalization;   // the update layer's preferred localization
    std::string updaterResolved;       // that localization passed through resolve
    std::string settingsTitle;         // the text of "s046"
};

// The one result line of a passing check, or empty when any step fails.
std::optional<std::string> localizationCheckLine(const LocalizationCheckInputs& inputs);

// Runs the check for this process: prints the line and returns 0, or stops the process at once
// with no output, because a build that cannot speak its own language must not pass silently.
int runLocalizationCheck();

}  // namespace vantle
