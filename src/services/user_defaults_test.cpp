#include "services/user_defaults.h"

#include <gtest/gtest.h>

#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

class UserDefaultsTest : public ::testing::Test {
protected:
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
};

TEST_F(UserDefaultsTest, FreshUserReadsDefaultsOfEveryType) {
    defaults.registerDefaults({{std::string(settings::kLinked), true}});
    EXPECT_TRUE(defaults.boolean(settings::kLinked));
    EXPECT_FALSE(defaults.boolean(settings::kSoftwareBrightness));
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 0);
    EXPECT_FALSE(defaults.string(settings::kLanguagePreference).has_value());
    EXPECT_FALSE(defaults.stringArray(settings::kSeparatorPaths).has_value());
    EXPECT_FALSE(defaults.dictionary(settings::kMutedLevels).has_value());
}

TEST_F(UserDefaultsTest, RegisteredDefaultIsNeverWrittenToTheStore) {
    defaults.registerDefaults({{std::string(settings::kLinked), true}});
    EXPECT_TRUE(store.values.empty());
}

TEST_F(UserDefaultsTest, StoredValueWinsOverRegisteredDefault) {
    defaults.registerDefaults({{std::string(settings::kLinked), true}});
    defaults.set(settings::kLinked, false);
    EXPECT_FALSE(defaults.boolean(settings::kLinked));
    defaults.remove(settings::kLinked);
    EXPECT_TRUE(defaults.boolean(settings::kLinked));
}

TEST_F(UserDefaultsTest, WrongTypeReadsAsTheDefault) {
    defaults.registerDefaults({{std::string(settings::kLinked), true}});
    store.values[std::string(settings::kLinked)] = "no";
    store.values[std::string(settings::kSoftwareBrightness)] = std::int64_t{1};
    store.values[std::string(settings::kSeparatorArtworkVersion)] = "6";
    store.values[std::string(settings::kSeparatorTheme)] = true;
    store.values[std::string(settings::kSeparatorPaths)] = PlistValue::Array{"/a", 2};
    store.values[std::string(settings::kMutedLevels)] = PlistValue::Array{};
    EXPECT_TRUE(defaults.boolean(settings::kLinked));
    EXPECT_FALSE(defaults.boolean(settings::kSoftwareBrightness));
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 0);
    EXPECT_FALSE(defaults.string(settings::kSeparatorTheme).has_value());
    EXPECT_FALSE(defaults.stringArray(settings::kSeparatorPaths).has_value());
    EXPECT_FALSE(defaults.dictionary(settings::kMutedLevels).has_value());
}

TEST_F(UserDefaultsTest, TypedValuesReadBack) {
    defaults.set(settings::kSoftwareBrightness, true);
    defaults.set(settings::kSeparatorArtworkVersion, std::int64_t{6});
    defaults.set(settings::kSeparatorTheme, "Dark");
    defaults.set(settings::kSeparatorPaths, PlistValue::stringArray({"/x/Séparateur.app"}));
    EXPECT_TRUE(defaults.boolean(settings::kSoftwareBrightness));
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Dark");
    EXPECT_EQ(defaults.stringArray(settings::kSeparatorPaths), std::vector<std::string>{"/x/Séparateur.app"});
}

TEST_F(UserDefaultsTest, FailedSaveIsReported) {
    store.failWrites = true;
    EXPECT_FALSE(defaults.set(settings::kLinked, false));
}

}  // namespace
}  // namespace vantle
