#include "services/muted_levels.h"

#include <gtest/gtest.h>

#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

class MutedLevelsTest : public ::testing::Test {
protected:
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
};

TEST_F(MutedLevelsTest, FreshUserHasNothingMuted) {
    EXPECT_TRUE(loadSavedLevels(defaults).empty());
}

TEST_F(MutedLevelsTest, LevelsSurviveStoreAndLoadBitForBit) {
    const SavedLevels saved{{"sink.a", {0.1f, 0.7362891f}}, {"sink.b", {1.0f}}};
    storeSavedLevels(defaults, saved);
    EXPECT_EQ(loadSavedLevels(defaults), saved);
    // Stored as doubles.
    const PlistValue::Dictionary& stored = *store.values.at("mutedLevels").asDictionary();
    EXPECT_NE(stored.at("sink.a").asArray()->at(0).asReal(), nullptr);
}

TEST_F(MutedLevelsTest, OneNonNumericElementEmptiesTheWholeRecord) {
    store.values["mutedLevels"] = PlistValue::Dictionary{
        {"good", PlistValue::Array{0.5, 0.25}},
        {"bad", PlistValue::Array{0.5, "loud"}},
    };
    EXPECT_TRUE(loadSavedLevels(defaults).empty());
}

TEST_F(MutedLevelsTest, AValueThatIsNotAnArrayEmptiesTheWholeRecord) {
    store.values["mutedLevels"] = PlistValue::Dictionary{{"good", PlistValue::Array{0.5}}, {"bad", 0.5}};
    EXPECT_TRUE(loadSavedLevels(defaults).empty());
}

TEST_F(MutedLevelsTest, IntegerLevelsAreNumbersToo) {
    store.values["mutedLevels"] = PlistValue::Dictionary{{"sink", PlistValue::Array{1, 0.5}}};
    EXPECT_EQ(loadSavedLevels(defaults), (SavedLevels{{"sink", {1.0f, 0.5f}}}));
}

TEST_F(MutedLevelsTest, OutputWithoutElementsIsStoredWithAnEmptyList) {
    storeSavedLevels(defaults, {{"no-elements", {}}});
    const PlistValue::Dictionary& stored = *store.values.at("mutedLevels").asDictionary();
    ASSERT_EQ(stored.count("no-elements"), 1u);
    EXPECT_TRUE(stored.at("no-elements").asArray()->empty());
    EXPECT_EQ(loadSavedLevels(defaults), (SavedLevels{{"no-elements", {}}}));
}

TEST_F(MutedLevelsTest, SavingNothingLeavesAnEmptyDictionary) {
    storeSavedLevels(defaults, {{"sink", {0.5f}}});
    storeSavedLevels(defaults, {});
    ASSERT_EQ(store.values.count("mutedLevels"), 1u);
    ASSERT_NE(store.values.at("mutedLevels").asDictionary(), nullptr);
    EXPECT_TRUE(store.values.at("mutedLevels").asDictionary()->empty());
}

}  // namespace
}  // namespace vantle
