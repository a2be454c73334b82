#include "dock/tile_record.h"

#include <gtest/gtest.h>

#include "dock/file_url.h"

namespace vantle {
namespace {

using Dictionary = PlistValue::Dictionary;

TileRecord record(Dictionary keys) {
    return PlistValue(std::move(keys));
}

TileRecord fileTile(PlistValue url) {
    return record({{"tile-type", "file-tile"},
                   {"tile-data", Dictionary{{"file-data", Dictionary{{"_CFURLString", std::move(url)},
                                                                      {"_CFURLStringType", 15}}}}}});
}

TEST(DockIdentityTest, SmallSpacerIsItsTypeAlone) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "small-spacer-tile"}, {"GUID", 7}})), "small-spacer-tile");
}

TEST(DockIdentityTest, NormalSpacerIsItsTypeAlone) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "spacer-tile"}, {"GUID", 12345}})), "spacer-tile");
}

TEST(DockIdentityTest, FileTileIsTypeBarAndGuid) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", 7}})), "file-tile|7");
}

TEST(DockIdentityTest, FileTileWithoutGuidEndsInTheBar) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}})), "file-tile|");
}

TEST(DockIdentityTest, RecordWithoutTypeStartsWithTheBar) {
    EXPECT_EQ(dockIdentity(record({{"GUID", 7}})), "|7");
}

TEST(DockIdentityTest, TypeThatIsNotTextCountsAsEmpty) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", 3}, {"GUID", 7}})), "|7");
}

TEST(DockIdentityTest, LargeGuidKeepsAllItsDigits) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", std::int64_t{4294967295}}})),
              "file-tile|4294967295");
}

TEST(DockIdentityTest, GuidsOfOtherKindsAreDescribed) {
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", 7.0}})), "file-tile|7");
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", 7.5}})), "file-tile|7.5");
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", "abc"}})), "file-tile|abc");
    EXPECT_EQ(dockIdentity(record({{"tile-type", "file-tile"}, {"GUID", true}})), "file-tile|1");
}

TEST(TilePathTest, SeparatorTilePointsToItsStandardisedPath) {
    EXPECT_EQ(tilePath(fileTile("file:///Users/ann/Sep/./X.app/")), "/Users/ann/Sep/X.app");
}

TEST(TilePathTest, SpacerHasNoPath) {
    EXPECT_EQ(tilePath(spacerTile(kSpacerTile, 5)), std::nullopt);
}

TEST(TilePathTest, UrlThatIsNotAUrlGivesNoPath) {
    EXPECT_EQ(tilePath(fileTile("/Users/ann/My App.app")), std::nullopt);
}

TEST(TilePathTest, EveryLinkOfTheChainMustHaveItsType) {
    EXPECT_EQ(tilePath(fileTile(15)), std::nullopt);
    EXPECT_EQ(tilePath(record({{"tile-data", "x"}})), std::nullopt);
    EXPECT_EQ(tilePath(record({{"tile-data", Dictionary{{"file-data", PlistValue::Array{}}}}})), std::nullopt);
    EXPECT_EQ(tilePath(record({})), std::nullopt);
    EXPECT_EQ(tilePath(PlistValue("file:///a")), std::nullopt);
}

TEST(TileRecordTest, SpacerHasTypeGuidAndEmptyData) {
    EXPECT_EQ(spacerTile(kSmallSpacerTile, 42),
              record({{"tile-type", "small-spacer-tile"}, {"GUID", 42}, {"tile-data", Dictionary{}}}));
}

TEST(TileRecordTest, SpacerGuidIsNeverZeroAndReachesTheLargestValue) {
    EXPECT_EQ(spacerGuid(0), 1u);
    EXPECT_EQ(spacerGuid(4294967294u), 4294967295u);
}

TEST(TileRecordTest, SeparatorTileHasUrlTypeFifteenAndLabelButNoGuid) {
    const TileRecord tile = separatorTile("file:///a/S.app/", "Separator");
    EXPECT_EQ(tile, record({{"tile-type", "file-tile"},
                            {"tile-data", Dictionary{{"file-data", Dictionary{{"_CFURLString", "file:///a/S.app/"},
                                                                               {"_CFURLStringType", 15}}},
                                                     {"file-label", "Separator"}}}}));
    EXPECT_EQ(tilePath(tile), "/a/S.app");
}

TEST(TileRecordTest, TileTypeIsReadOnlyWhenItIsText) {
    EXPECT_EQ(tileType(record({{"tile-type", "spacer-tile"}})), "spacer-tile");
    EXPECT_EQ(tileType(record({{"tile-type", 1}})), std::nullopt);
    EXPECT_EQ(tileType(record({})), std::nullopt);
}

}  // namespace
}  // namespace vantle
