// Checks the real string tables that ship with the program.
#include <gtest/gtest.h>

#include <set>

#include "localization/localization.h"

namespace vantle {
namespace {

const Bundle& sourceBundle() {
    static const Bundle bundle(VANTLE_SOURCE_RESOURCES, {});
    return bundle;
}

std::set<std::string> placeholders(const std::string& text) {
    std::set<std::string> found;
    for (std::size_t open = text.find('{'); open != std::string::npos; open = text.find('{', open + 1)) {
        const std::size_t close = text.find('}', open);
        if (close != std::string::npos) {
            found.insert(text.substr(open, close - open + 1));
        }
    }
    return found;
}

std::vector<std::string> expectedKeys() {
    std::vector<std::string> keys;
    for (int number = 0; number <= 153; ++number) {
        char key[16];  // room for any int, so that no compiler sees a truncation
        std::snprintf(key, sizeof key, "s%03d", number);
        keys.emplace_back(key);
    }
    return keys;
}

class StringTablesTest : public ::testing::TestWithParam<std::string_view> {};

TEST_P(StringTablesTest, HasExactlyTheKeysOfEnglishWithTextAndTheSamePlaceholders) {
    const StringTable english = Localization::table("en", sourceBundle());
    const StringTable table = Localization::table(GetParam(), sourceBundle());
    std::vector<std::string> keys;
    for (const auto& [key, text] : table) {
        keys.push_back(key);
        EXPECT_FALSE(text.empty()) << key;
        ASSERT_EQ(english.count(key), 1u) << key;
        EXPECT_EQ(placeholders(text), placeholders(english.at(key))) << key;
    }
    EXPECT_EQ(keys, expectedKeys());
}

TEST_P(StringTablesTest, WarningTextsStartWithTheWarningSign) {
    const StringTable table = Localization::table(GetParam(), sourceBundle());
    for (const char* key : {"s079", "s082", "s145"}) {
        EXPECT_TRUE(table.at(key).starts_with("⚠")) << key;
    }
    // These are appended to the status line that the warning sign colours; a sign inside them
    // would colour a healthy state.
    for (const char* key : {"s080", "s081", "s083", "s144"}) {
        EXPECT_EQ(table.at(key).find("⚠"), std::string::npos) << key;
    }
}

TEST_P(StringTablesTest, TextLookedUpWithoutArgumentsHasNoPlaceholder) {
    const StringTable table = Localization::table(GetParam(), sourceBundle());
    // "s079" is shown both with the number of displays and without any argument.
    EXPECT_TRUE(placeholders(table.at("s079")).empty());
}

// What makes a copy able to launch at login differs by platform (the Applications folder on one,
// an install under /usr, /opt or ~/.local on the other), so the hint speaks of an installed copy
// and names no folder.
TEST_P(StringTablesTest, LaunchAtLoginHintSpeaksOfAnInstalledCopyAndNamesNoFolder) {
    const std::string hint = Localization::table(GetParam(), sourceBundle()).at("s077");
    for (const char* folder : {"folder", "dossier", "map", "Ordner", "cartella", "carpeta", "pasta", "папк"}) {
        EXPECT_EQ(hint.find(folder), std::string::npos) << folder << " in " << hint;
    }
    for (const char* installed : {"instal", "ïnstal", "установ"}) {
        if (hint.find(installed) != std::string::npos) {
            return;
        }
    }
    ADD_FAILURE() << "no word of installing in " << hint;
}

INSTANTIATE_TEST_SUITE_P(Languages, StringTablesTest, ::testing::ValuesIn(Localization::supported),
                         [](const ::testing::TestParamInfo<std::string_view>& parameter) {
                             return std::string(parameter.param);
                         });

TEST(EnglishTableTest, HasAHundredAndFiftyFourTexts) {
    EXPECT_EQ(Localization::table("en", sourceBundle()).size(), 154u);
}

}  // namespace
}  // namespace vantle
