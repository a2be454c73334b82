#include "localization/localization.h"

#include <gtest/gtest.h>

#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

using Localization::format;
using Localization::resolve;

TEST(ResolveTest, EmptyListGivesEnglish) {
    EXPECT_EQ(resolve({}), "en");
}

TEST(ResolveTest, SkipsUnsupportedLanguages) {
    EXPECT_EQ(resolve({"zh-Hans", "de-CH"}), "de");
}

TEST(ResolveTest, LoneUnderscoreGivesEnglish) {
    EXPECT_EQ(resolve({"_"}), "en");
}

TEST(ResolveTest, RegionAndCaseVariantsGiveTheLanguage) {
    EXPECT_EQ(resolve({"pt-BR"}), "pt");
    EXPECT_EQ(resolve({"pt_PT"}), "pt");
    EXPECT_EQ(resolve({"PT"}), "pt");
    EXPECT_EQ(resolve({"en-GB"}), "en");
    EXPECT_EQ(resolve({"xx", "yy"}), "en");
    EXPECT_EQ(resolve({"--ru--"}), "ru");
}

TEST(FormatTest, PlaceholdersRepeatAndComeInAnyOrder) {
    EXPECT_EQ(format("{1} {0} {1}", {"a", "b"}), "b a b");
}

TEST(FormatTest, PlaceholderWithoutArgumentStays) {
    EXPECT_EQ(format("{2}", {"a"}), "{2}");
    EXPECT_EQ(format("Version {0}", {}), "Version {0}");
}

TEST(FormatTest, NonNumericBracesAreUnchanged) {
    EXPECT_EQ(format("{x}", {}), "{x}");
    EXPECT_EQ(format("{}", {"a"}), "{}");
    EXPECT_EQ(format("{-1}", {"a"}), "{-1}");
}

TEST(FormatTest, EdgesOfThePattern) {
    EXPECT_EQ(format("{{0}}", {"a"}), "{a}");
    EXPECT_EQ(format("{0", {"a"}), "{0");
    EXPECT_EQ(format("{99999999999999999999999}", {"a"}), "{99999999999999999999999}");
    EXPECT_EQ(format("{00}", {"a"}), "a");
    EXPECT_EQ(format("{0}{0}", {"{1}", "z"}), "{1}{1}");  // an argument is never formatted again
    EXPECT_EQ(format("", {"a"}), "");
}

TEST(TextTest, FallsBackToEnglishThenToTheKey) {
    const StringTable french{{"s001", "Prêt."}};
    const StringTable english{{"s001", "Ready."}, {"s002", "Check for updates automatically"}};
    EXPECT_EQ(Localization::text("s001", french, english), "Prêt.");
    EXPECT_EQ(Localization::text("s002", french, english), "Check for updates automatically");
    EXPECT_EQ(Localization::text("s999", french, english), "s999");
    EXPECT_EQ(Localization::text("s001", {}, {}), "s001");
}

class TableTest : public ::testing::Test {
protected:
    Bundle bundle() const { return Bundle(directory.path(), {}); }
    testing::TemporaryDirectory directory;
};

TEST_F(TableTest, ReadsTheLanguageFolderOfTheBundle) {
    testing::writeFile(directory.path() / "fr.lproj" / "Localizable.strings", "\"s046\" = \"Réglages\";");
    EXPECT_EQ(Localization::table("fr", bundle()), (StringTable{{"s046", "Réglages"}}));
}

TEST_F(TableTest, MissingFolderOrFileGivesEmptyTable) {
    std::filesystem::create_directories(directory.path() / "de.lproj");
    EXPECT_TRUE(Localization::table("nl", bundle()).empty());
    EXPECT_TRUE(Localization::table("de", bundle()).empty());
}

TEST_F(TableTest, BrokenFileGivesEmptyTable) {
    testing::writeFile(directory.path() / "it.lproj" / "Localizable.strings", "\"s046\" = \"Impostazioni\"");
    EXPECT_TRUE(Localization::table("it", bundle()).empty());
}

TEST_F(TableTest, XmlPropertyListOfStringsIsATableToo) {
    testing::writeFile(directory.path() / "es.lproj" / "Localizable.strings",
                       "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>s046</key><string>Ajustes</string>"
                       "</dict></plist>");
    EXPECT_EQ(Localization::table("es", bundle()), (StringTable{{"s046", "Ajustes"}}));
    testing::writeFile(directory.path() / "pt.lproj" / "Localizable.strings",
                       "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>s046</key><integer>3</integer>"
                       "</dict></plist>");
    EXPECT_TRUE(Localization::table("pt", bundle()).empty());
}

TEST_F(TableTest, FolderInPlaceOfTheTableGivesEmptyTable) {
    std::filesystem::create_directories(directory.path() / "ru.lproj" / "Localizable.strings");
    EXPECT_TRUE(Localization::table("ru", bundle()).empty());
}

class SavePreferenceTest : public ::testing::Test {
protected:
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
};

TEST_F(SavePreferenceTest, SupportedCodeIsStoredWithTheLanguageList) {
    Localization::savePreference("nl", defaults);
    EXPECT_EQ(defaults.string(settings::kLanguagePreference), "nl");
    EXPECT_EQ(defaults.stringArray(settings::kAppleLanguages), std::vector<std::string>{"nl"});
}

TEST_F(SavePreferenceTest, AutoForgetsTheLanguageList) {
    Localization::savePreference("nl", defaults);
    Localization::savePreference("auto", defaults);
    EXPECT_EQ(defaults.string(settings::kLanguagePreference), "auto");
    EXPECT_FALSE(defaults.object(settings::kAppleLanguages).has_value());
}

TEST_F(SavePreferenceTest, UnsupportedCodeChangesNothing) {
    Localization::savePreference("ru", defaults);
    const PlistValue::Dictionary before = store.values;
    Localization::savePreference("xx", defaults);
    Localization::savePreference("", defaults);
    EXPECT_EQ(store.values, before);
}

TEST(LanguageNamesTest, EverySupportedLanguageHasItsOwnName) {
    ASSERT_EQ(Localization::languageNames.size(), Localization::supported.size());
    EXPECT_EQ(Localization::languageNames.at("fr"), "Français");
    EXPECT_EQ(Localization::languageNames.at("ru"), "Русский");
    for (std::string_view code : Localization::supported) {
        EXPECT_EQ(Localization::languageNames.count(code), 1u) << code;
    }
}

}  // namespace
}  // namespace vantle
