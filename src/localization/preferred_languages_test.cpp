#include "localization/preferred_languages.h"

#include <gtest/gtest.h>

#include <map>

#include "localization/localization.h"
#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

class PreferredLanguagesTest : public ::testing::Test {
protected:
    std::vector<std::string> languages() const {
        return preferredLanguages(defaults, [this](const char* name) -> std::optional<std::string> {
            if (auto found = environment.find(name); found != environment.end()) {
                return found->second;
            }
            return std::nullopt;
        });
    }

    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    std::map<std::string, std::string> environment;
};

TEST_F(PreferredLanguagesTest, SavedLanguageComesFirst) {
    store.values["AppleLanguages"] = PlistValue::stringArray({"it"});
    environment = {{"LANGUAGE", "fr"}, {"LANG", "de_DE.UTF-8"}};
    EXPECT_EQ(languages(), (std::vector<std::string>{"it", "fr", "de_DE"}));
    EXPECT_EQ(Localization::resolve(languages()), "it");
}

TEST_F(PreferredLanguagesTest, EnvironmentInItsOrder) {
    environment = {{"LANGUAGE", "zh_CN:nl_BE"}, {"LC_ALL", "es_ES.UTF-8@euro"}, {"LC_MESSAGES", "ru_RU"},
                   {"LANG", "pt_BR.UTF-8"}};
    EXPECT_EQ(languages(), (std::vector<std::string>{"zh_CN", "nl_BE", "es_ES", "ru_RU", "pt_BR"}));
    EXPECT_EQ(Localization::resolve(languages()), "nl");
}

TEST_F(PreferredLanguagesTest, CLocaleNamesNoLanguage) {
    environment = {{"LANGUAGE", ""}, {"LC_ALL", "C.UTF-8"}, {"LANG", "POSIX"}};
    EXPECT_TRUE(languages().empty());
    EXPECT_EQ(Localization::resolve(languages()), "en");
}

TEST_F(PreferredLanguagesTest, SavedValueOfTheWrongTypeIsIgnored) {
    store.values["AppleLanguages"] = "de";
    environment = {{"LANG", "fr_FR.UTF-8"}};
    EXPECT_EQ(Localization::resolve(languages()), "fr");
}

}  // namespace
}  // namespace vantle
