#include "dock/dock_tiles.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>

#include "dock/testing/fake_dock_tools.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"

namespace vantle {
namespace {

using Dictionary = PlistValue::Dictionary;
using Array = PlistValue::Array;

const CommandError kMismatch{"Mismatch", 1, "mismatch"};

std::string xml(const PlistValue& value) {
    return serializePropertyListXml(value);
}

TEST(TileListTest, DockDomainGivesItsPersistentApps) {
    const Array apps{Dictionary{{"tile-type", "spacer-tile"}}, Dictionary{{"tile-type", "file-tile"}}};
    const auto tiles = tileListFromExport(xml(Dictionary{{"persistent-apps", apps}, {"tilesize", 48}}), kMismatch);
    ASSERT_TRUE(tiles);
    EXPECT_EQ(*tiles, apps);
}

TEST(TileListTest, EmptyAppListIsAnEmptyList) {
    const auto tiles = tileListFromExport(xml(Dictionary{{"persistent-apps", Array{}}}), kMismatch);
    ASSERT_TRUE(tiles);
    EXPECT_TRUE(tiles->empty());
}

TEST(TileListTest, BinaryPropertyListIsReadToo) {
    plist_t root = plist_new_dict();
    plist_t apps = plist_new_array();
    plist_t tile = plist_new_dict();
    plist_dict_set_item(tile, "tile-type", plist_new_string("small-spacer-tile"));
    plist_array_append_item(apps, tile);
    plist_dict_set_item(root, "persistent-apps", apps);
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    const std::string binary(bytes, length);
    std::free(bytes);
    plist_free(root);

    const auto tiles = tileListFromExport(binary, kMismatch);
    ASSERT_TRUE(tiles);
    EXPECT_EQ(*tiles, (Array{Dictionary{{"tile-type", "small-spacer-tile"}}}));
}

TEST(TileListTest, BytesThatAreNoPropertyListGiveTheParseError) {
    const auto tiles = tileListFromExport("this is not a property list", kMismatch);
    ASSERT_FALSE(tiles);
    EXPECT_EQ(tiles.error(), propertyListReadError(L("s113")));
    EXPECT_EQ(tiles.error().domain, "NSCocoaErrorDomain");
    EXPECT_FALSE(tileListFromExport("", kMismatch));
}

TEST(TileListTest, EmptyDictionaryIsAMismatchNotAnEmptyList) {
    const auto tiles = tileListFromExport(xml(Dictionary{}), kMismatch);
    ASSERT_FALSE(tiles);
    EXPECT_EQ(tiles.error(), kMismatch);
}

TEST(TileListTest, RootThatIsNoDictionaryIsAMismatch) {
    EXPECT_EQ(tileListFromExport(xml(Array{}), kMismatch).error(), kMismatch);
    EXPECT_EQ(tileListFromExport(xml(PlistValue("text")), kMismatch).error(), kMismatch);
}

TEST(TileListTest, MissingAppListIsAMismatch) {
    EXPECT_EQ(tileListFromExport(xml(Dictionary{{"tilesize", 48}}), kMismatch).error(), kMismatch);
}

TEST(TileListTest, AppListThatIsNoArrayOfDictionariesIsAMismatch) {
    EXPECT_EQ(tileListFromExport(xml(Dictionary{{"persistent-apps", "x"}}), kMismatch).error(), kMismatch);
    EXPECT_EQ(tileListFromExport(xml(Dictionary{{"persistent-apps", Dictionary{{"a", 1}}}}), kMismatch).error(),
              kMismatch);
    EXPECT_EQ(
        tileListFromExport(xml(Dictionary{{"persistent-apps", Array{Dictionary{}, PlistValue("x")}}}), kMismatch)
            .error(),
        kMismatch);
}

TEST(TileListTest, TileTextWithANulByteIsReadUpToItInsteadOfStoppingTheProgram) {
    using namespace std::string_literals;
    const std::string exported =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
        "<key>persistent-apps</key><array><dict><key>tile-type</key><string>spacer-tile\0\xFF</string></dict>"
        "</array></dict></plist>"s;
    const auto tiles = tileListFromExport(exported, kMismatch);
    ASSERT_TRUE(tiles);
    EXPECT_EQ(*tiles, (Array{Dictionary{{"tile-type", "spacer-tile"}}}));
}

TEST(DockTilesTest, ReadsTheListThroughDefaultsExport) {
    testing::FakeDockTools tools;
    tools.setApps({Dictionary{{"tile-type", "spacer-tile"}}});
    const auto tiles = dockTiles(tools);
    ASSERT_TRUE(tiles);
    EXPECT_EQ(tiles->size(), 1u);
    EXPECT_EQ(tools.calls, (std::vector<std::string>{"defaults export com.apple.dock -"}));
}

TEST(DockTilesTest, EmptyDomainIsTheDockErrorWithItsText) {
    testing::FakeDockTools tools;
    tools.exportOutput = xml(Dictionary{});
    const auto tiles = dockTiles(tools);
    ASSERT_FALSE(tiles);
    EXPECT_EQ(tiles.error(), (CommandError{"Dock", 1, L("s113")}));
}

TEST(DockTilesTest, FailingExportGivesTheToolsError) {
    testing::FakeDockTools tools;
    tools.failures["defaults export com.apple.dock -"] = 1;
    tools.failureStatus = 4;
    tools.failureText = "Domain com.apple.dock does not exist\n";
    const auto tiles = dockTiles(tools);
    ASSERT_FALSE(tiles);
    EXPECT_EQ(tiles.error(), (CommandError{"VantleControl", 4, "Domain com.apple.dock does not exist\n"}));
}

TEST(DockTilesTest, WriteArgumentsReplaceOrAppend) {
    EXPECT_EQ(dockWriteArguments("<xml/>", false),
              (std::vector<std::string>{"write", "com.apple.dock", "persistent-apps", "<xml/>"}));
    EXPECT_EQ(dockWriteArguments("<xml/>", true),
              (std::vector<std::string>{"write", "com.apple.dock", "persistent-apps", "-array-add", "<xml/>"}));
}

}  // namespace
}  // namespace vantle
