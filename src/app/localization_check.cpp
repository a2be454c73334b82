#include "app/localization_check.h"

#include <cstdio>
#include <cstdlib>

#include "localization/localization.h"

namespace vantle {
namespace {

constexpr const char* kSampleVersion = "1.0.261024.10";

// The update layer has no string tables of its own on this platform: it speaks the
// program's resolved language.
std::string updaterPreferredLocalization() {
    return Localization::language();
}

}  // namespace

std::optional<std::string> localizationCheckLine(const LocalizationCheckInputs& inputs) {
    const std::string& expected = inputs.expectedLanguage.value_or(inputs.language);
    if (inputs.language != expected || inputs.englishCount == 0 || inputs.selectedCount != inputs.englishCount ||
        inputs.versionText.find("{0}") != std::string::npos || inputs.updaterResolved != expected) {
        return std::nullopt;
    }
    return "PASS language=" + inputs.language + " Sparkle=" + inputs.updaterLocalization +
           " keys=" + std::to_string(inputs.selectedCount) + " settings=" + inputs.settingsTitle;
}

int runLocalizationCheck() {
    LocalizationCheckInputs inputs;
    inputs.language = Localization::language();
    if (const char* expected = std::getenv("VANTLE_EXPECT_LANGUAGE")) {
        inputs.expectedLanguage = expected;
    }
    inputs.englishCount = Localization::english().size();
    inputs.selectedCount = Localization::selected().size();
    inputs.versionText = L("s073", kSampleVersion);
    std::string updaterLocalization = updaterPreferredLocalization();
    inputs.updaterLocalization = updaterLocalization.empty() ? "en" : updaterLocalization;
    inputs.updaterResolved = Localization::resolve({inputs.updaterLocalization});
    inputs.settingsTitle = L("s046");

    const std::optional<std::string> line = localizationCheckLine(inputs);
    if (!line) {
        std::abort();
    }
    std::printf("%s\n", line->c_str());
    return 0;
}

}  // namespace vantle
