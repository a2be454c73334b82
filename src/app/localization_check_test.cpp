#include "app/localization_check.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

LocalizationCheckInputs passingFrench() {
    LocalizationCheckInputs inputs;
    inputs.language = "fr";
    inputs.englishCount = 154;
    inputs.selectedCount = 154;
    inputs.versionText = "Version installée : 1.0.261024.10";
    inputs.updaterLocalization = "fr";
    inputs.updaterResolved = "fr";
    inputs.settingsTitle = "Réglages";
    return inputs;
}

TEST(LocalizationCheckTest, PassLineNamesLanguageUpdaterKeysAndSettingsTitle) {
    EXPECT_EQ(localizationCheckLine(passingFrench()), "PASS language=fr Sparkle=fr keys=154 settings=Réglages");
}

TEST(LocalizationCheckTest, ExpectedLanguageMustMatch) {
    LocalizationCheckInputs inputs = passingFrench();
    inputs.expectedLanguage = "fr";
    EXPECT_TRUE(localizationCheckLine(inputs).has_value());
    inputs.expectedLanguage = "de";
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
    inputs.expectedLanguage = "";  // set but empty still counts
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
}

TEST(LocalizationCheckTest, FailsOnEmptyEnglishTable) {
    LocalizationCheckInputs inputs = passingFrench();
    inputs.englishCount = 0;
    inputs.selectedCount = 0;
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
}

TEST(LocalizationCheckTest, FailsWhenTheTablesDifferInSize) {
    LocalizationCheckInputs inputs = passingFrench();
    inputs.selectedCount = 153;
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
}

TEST(LocalizationCheckTest, FailsOnUnsubstitutedPlaceholder) {
    LocalizationCheckInputs inputs = passingFrench();
    inputs.versionText = "Version installée : {0}";
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
}

TEST(LocalizationCheckTest, FailsWhenTheUpdaterSpeaksAnotherLanguage) {
    LocalizationCheckInputs inputs = passingFrench();
    inputs.updaterLocalization = "de";
    inputs.updaterResolved = "de";
    EXPECT_FALSE(localizationCheckLine(inputs).has_value());
}

}  // namespace
}  // namespace vantle
