#include <gtest/gtest.h>

#include "dock/file_url.h"
#include "dock_actions_world.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

using Array = PlistValue::Array;
using Dictionary = PlistValue::Dictionary;
using Strings = std::vector<std::string>;

const std::string kReplace = "defaults write com.apple.dock persistent-apps <xml> [dock running]";

TileRecord separatorAt(const std::string& path) {
    return separatorTile(fileUrlString(path, true), "Separator");
}

const TileRecord kApp = PlistValue(Dictionary{{"tile-type", "file-tile"}, {"GUID", 7},
                                              {"tile-data", Dictionary{{"file-label", "Mail"}}}});

class SpacersTest : public testing::DockActionsWorld {};

TEST_F(SpacersTest, SmallSpacerIsAnnouncedAddedAndConfirmed) {
    actions().smallSpacer();
    EXPECT_EQ(line.reports, Strings{L("s114")});
    settle();
    EXPECT_EQ(line.reports, (Strings{L("s114"), L("s115")}));
    const Array apps = world.apps();
    ASSERT_EQ(apps.size(), 1u);
    EXPECT_EQ(tileType(apps[0]), "small-spacer-tile");
    const std::int64_t guid = *apps[0].asDictionary()->at("GUID").asInteger();
    EXPECT_GE(guid, 1);
    EXPECT_LE(guid, 4294967295);
    EXPECT_EQ(apps[0].asDictionary()->at("tile-data"), PlistValue(Dictionary{}));
}

TEST_F(SpacersTest, BigSpacerIsANormalSpacer) {
    actions().bigSpacer();
    settle();
    ASSERT_EQ(world.apps().size(), 1u);
    EXPECT_EQ(tileType(world.apps()[0]), "spacer-tile");
    EXPECT_EQ(line.last(), L("s115"));
}

TEST_F(SpacersTest, SpacerOnAnEmptyDomainShowsTheAppListError) {
    world.writePreferences(serializePropertyListXml(Dictionary{}));
    actions().bigSpacer();
    settle();
    EXPECT_EQ(line.last(), L("s120"));
    EXPECT_TRUE(world.dockRunning());
}

class RemovalTest : public testing::DockActionsWorld {
protected:
    RemovalTest()
        : DockActionsWorld({kApp, separatorAt("/s/Old.app"), spacerTile(kSpacerTile, 3), separatorAt("/s/Twice.app"),
                            separatorAt("/s/Twice.app")}) {}
    void record(const Strings& paths) { defaults.set(settings::kSeparatorPaths, PlistValue::stringArray(paths)); }
    Strings recorded() { return defaults.stringArray(settings::kSeparatorPaths).value_or(Strings{}); }
};

TEST_F(RemovalTest, OnlyTheOlderSeparatorInTheDockIsRemoved) {
    record({"/s/Old.app", "/s/Gone.app"});
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s045")});
    EXPECT_EQ(world.apps(),
              (Array{kApp, spacerTile(kSpacerTile, 3), separatorAt("/s/Twice.app"), separatorAt("/s/Twice.app")}));
    EXPECT_EQ(recorded(), Strings{"/s/Gone.app"});
    EXPECT_EQ(world.log(), (Strings{"defaults export com.apple.dock - [dock running]", kReplace,
                                    "killall Dock [dock running]"}));
    EXPECT_EQ(world.dockStarts(), 2);
}

TEST_F(RemovalTest, SeparatorStandingTwiceLosesBothTiles) {
    record({"/s/Old.app", "/s/Twice.app"});
    actions().removeSeparator();
    EXPECT_EQ(world.apps(), (Array{kApp, separatorAt("/s/Old.app"), spacerTile(kSpacerTile, 3)}));
    EXPECT_EQ(recorded(), Strings{"/s/Old.app"});
}

TEST_F(RemovalTest, RecordedSeparatorsNoneOfWhichIsInTheDockChangeNothing) {
    record({"/s/Gone.app", "/s/Also gone.app"});
    const std::string before = world.preferencesBytes();
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s044")});
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_EQ(world.log(), Strings{"defaults export com.apple.dock - [dock running]"});
    EXPECT_EQ(world.dockStarts(), 1);
}

TEST_F(RemovalTest, TileWhoseUrlIsNoUrlIsNeverTakenForTheSeparator) {
    // The Dock holds the path itself instead of a URL: it points nowhere, so nothing matches.
    world.writePreferences(serializePropertyListXml(
        Dictionary{{"persistent-apps", Array{kApp, separatorTile("/s/My Separator.app", "Separator")}}}));
    record({"/s/My Separator.app"});
    const std::string before = world.preferencesBytes();
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s044")});
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_EQ(recorded(), Strings{"/s/My Separator.app"});
}

TEST_F(RemovalTest, UnreadableAppListShowsTheReasonAndChangesNothing) {
    record({"/s/Old.app"});
    const std::string wrong = serializePropertyListXml(Dictionary{{"persistent-apps", "everything"}});
    world.writePreferences(wrong);
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", L("s113"))});
    EXPECT_EQ(world.preferencesBytes(), wrong);
    EXPECT_EQ(recorded(), Strings{"/s/Old.app"});
}

TEST_F(RemovalTest, FailedWriteWithUnreadableWordsKeepsTheRecord) {
    record({"/s/Old.app"});
    world.set("fail-write", "1");
    world.set("error-text", "invalid-utf8");
    const std::string before = world.preferencesBytes();
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", L("s112"))});
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_EQ(recorded(), Strings{"/s/Old.app"});
    EXPECT_TRUE(world.logOf("killall").empty());
}

TEST_F(RemovalTest, FailedRestartKeepsTheNewListAndRecord) {
    record({"/s/Old.app"});
    world.set("fail-killall-TERM", "1");
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", "killall: cannot send TERM\n")});
    EXPECT_EQ(world.apps().size(), 4u);
    EXPECT_TRUE(recorded().empty());
}

class UndoTest : public testing::DockActionsWorld {
protected:
    UndoTest()
        : DockActionsWorld({kApp, spacerTile(kSpacerTile, 21), spacerTile(kSpacerTile, 22),
                            spacerTile(kSmallSpacerTile, 23)}) {}
    void expectOrder(const Strings& order) {
        defaults.set(settings::kDockExpectedOrder, PlistValue::stringArray(order));
    }
    const Strings unchanged{"file-tile|7", "spacer-tile", "spacer-tile", "small-spacer-tile"};
};

TEST_F(UndoTest, WithoutRecordedOrderTheUndoRefusesAndRunsNothing) {
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s116")});
    EXPECT_TRUE(world.log().empty());
}

TEST_F(UndoTest, UnchangedDockLosesItsLastSmallSpacerOnceAndTheOrderIsCleared) {
    expectOrder(unchanged);
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s118")});
    EXPECT_EQ(world.apps(), (Array{kApp, spacerTile(kSpacerTile, 21), spacerTile(kSpacerTile, 22)}));
    EXPECT_EQ(defaults.object(settings::kDockExpectedOrder), std::nullopt);
    EXPECT_EQ(world.logOf("killall"), Strings{"killall Dock [dock running]"});
    EXPECT_EQ(world.dockStarts(), 2);

    actions().undoSpacer();
    EXPECT_EQ(line.last(), L("s116"));
    EXPECT_EQ(world.apps().size(), 3u);
}

TEST_F(UndoTest, MovedTileBlocksTheUndoAndNothingIsWritten) {
    expectOrder({"spacer-tile", "file-tile|7", "spacer-tile", "small-spacer-tile"});
    const std::string before = world.preferencesBytes();
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s117")});
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_TRUE(world.logOf("defaults write").empty());
    EXPECT_TRUE(defaults.stringArray(settings::kDockExpectedOrder));
}

TEST_F(UndoTest, SwappedSpacersOfOneTypeStillAllowTheUndo) {
    expectOrder(unchanged);
    world.writePreferences(serializePropertyListXml(Dictionary{
        {"persistent-apps", Array{kApp, spacerTile(kSpacerTile, 22), spacerTile(kSpacerTile, 21),
                                  spacerTile(kSmallSpacerTile, 23)}}}));
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s118")});
    EXPECT_EQ(world.apps(), (Array{kApp, spacerTile(kSpacerTile, 22), spacerTile(kSpacerTile, 21)}));
}

TEST_F(UndoTest, FailedWriteShowsTheUndoFailureAndKeepsTheOrder) {
    expectOrder(unchanged);
    world.set("fail-write", "1");
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s133", "Could not write domain com.apple.dock; exiting\n")});
    EXPECT_TRUE(defaults.stringArray(settings::kDockExpectedOrder));
    EXPECT_EQ(world.apps().size(), 4u);
}

TEST_F(UndoTest, ExportThatIsNoPropertyListShowsTheUndoFailure) {
    expectOrder(unchanged);
    world.writePreferences("{ not: a plist");
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s133", L("s113"))});
    EXPECT_EQ(world.preferencesBytes(), "{ not: a plist");
}

}  // namespace
}  // namespace vantle
