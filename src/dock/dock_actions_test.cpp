#include "dock/dock_actions.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "dock/file_url.h"
#include "dock/separator_bundle.h"
#include "dock/testing/fake_dock_tools.h"
#include "dock/testing/main_queue.h"
#include "dock/testing/recording_file_icons.h"
#include "localization/localization.h"
#include "services/file_contents.h"
#include "services/property_list_codec.h"
#include "services/settings_keys.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "support/temporary_directory.h"

namespace vantle {
namespace {

namespace fs = std::filesystem;
using Array = PlistValue::Array;
using Dictionary = PlistValue::Dictionary;
using Strings = std::vector<std::string>;

const std::string kReplace = "defaults write com.apple.dock persistent-apps <xml>";

class DockActionsTest : public ::testing::Test {
protected:
    DockActionsTest() {
        coordinator.setCompleted([this](const DockCoordinator::Result& result) { line.report(dockOutcomeText(result)); });
    }

    DockActions& actions() {
        if (!actions_) {
            actions_ = std::make_unique<DockActions>(DockActions::Services{
                .runner = tools,
                .coordinator = coordinator,
                .defaults = defaults,
                .messageLine = line,
                .bundle = *bundle,
                .icons = icons,
                .scheduler = scheduler,
                .applicationSupport = folder.path() / "share",
                .interfaceStyle = [this] { return interfaceStyle; },
                .followSystemAppearance = [this] { ++appearanceFollowed; },
                .drawNumber = [this] { return drawn; },
                .makeUuid = [this] { return fixedUuid.empty() ? makeUuid() : fixedUuid; },
                .dockAvailable = dockAvailable,
            });
        }
        return *actions_;
    }

    // Lets the coordinator's queue finish and delivers its results.
    void settle() {
        coordinator.waitUntilIdle();
        mainQueue.drain();
    }

    std::string artwork(const char* theme) const {
        return readFileContents(*separatorArtwork(mainBundle(), theme)).value_or("");
    }

    TileRecord separatorAt(const std::string& path) const { return separatorTile(fileUrlString(path, true), "S"); }
    fs::path bundleOf(const std::string& uuid) const {
        return folder.path() / "share" / "Vantle Control" / "Separators" / uuid / "S\xC3\xA9parateur.app";
    }
    Strings recorded() { return defaults.stringArray(settings::kSeparatorPaths).value_or(Strings{}); }
    void record(const Strings& paths) { defaults.set(settings::kSeparatorPaths, PlistValue::stringArray(paths)); }

    testing::TemporaryDirectory folder;
    testing::FakeDockTools tools;
    testing::MainQueue mainQueue;
    DockCoordinator coordinator{tools, mainQueue.poster(), [](std::chrono::milliseconds) {}};
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::RecordingMessageLine line;
    const Bundle* bundle = &mainBundle();
    testing::RecordingFileIcons icons;
    testing::ManualScheduler scheduler;
    std::optional<std::string> interfaceStyle;
    int appearanceFollowed = 0;
    std::uint32_t drawn = 41;
    std::string fixedUuid;
    bool dockAvailable = true;
    std::unique_ptr<DockActions> actions_;
};

// Adding a separator.

TEST_F(DockActionsTest, MissingTemplateSaysSoAndCreatesNothing) {
    const Bundle empty(folder.path() / "no-resources", {});
    bundle = &empty;
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s037")});
    EXPECT_FALSE(fs::exists(folder.path() / "share"));
    EXPECT_TRUE(tools.calls.empty());
}

TEST_F(DockActionsTest, NewSeparatorIsSignedGivenItsIconRecordedAndAppended) {
    tools.setApps({});
    actions().addSeparator();
    ASSERT_EQ(line.reports, Strings{L("s041")});
    const Strings paths = recorded();
    ASSERT_EQ(paths.size(), 1u);
    const fs::path bundlePath = paths.front();
    EXPECT_EQ(bundlePath.filename(), "S\xC3\xA9parateur.app");
    EXPECT_EQ(bundlePath.parent_path().parent_path(), folder.path() / "share" / "Vantle Control" / "Separators");
    ASSERT_EQ(icons.given.size(), 1u);
    EXPECT_EQ(icons.given[0].target, bundlePath);
    EXPECT_EQ(icons.given[0].image, artwork("Light"));

    // The Dock's tools run on the coordinator's queue: their record is read once it is idle.
    settle();
    ASSERT_FALSE(tools.calls.empty());
    EXPECT_EQ(tools.calls.front(), "codesign --force --sign - " + bundlePath.string());
    EXPECT_EQ(line.last(), L("s042"));
    ASSERT_EQ(tools.apps.size(), 1u);
    EXPECT_EQ(tools.apps[0], separatorTile(fileUrlString(bundlePath.string(), true), L("s040")));
    EXPECT_EQ(tilePath(tools.apps[0]), bundlePath.string());
}

TEST_F(DockActionsTest, TwoSeparatorsInARowGetTwoFoldersAndTwoIdentifiers) {
    tools.setApps({});
    actions().addSeparator();
    actions().addSeparator();
    settle();
    const Strings paths = recorded();
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_NE(fs::path(paths[0]).parent_path(), fs::path(paths[1]).parent_path());
    EXPECT_EQ(fs::path(paths[0]).filename(), fs::path(paths[1]).filename());
    const auto identifier = [](const std::string& path) {
        return parsePropertyList(*readFileContents(fs::path(path) / "Contents" / "Info.plist"))
            ->asDictionary()
            ->at("CFBundleIdentifier");
    };
    EXPECT_NE(identifier(paths[0]), identifier(paths[1]));
    EXPECT_EQ(tools.apps.size(), 2u);
}

TEST_F(DockActionsTest, DarkStyleGivesTheDarkArtwork) {
    interfaceStyle = "Dark";
    actions().addSeparator();
    ASSERT_EQ(icons.given.size(), 1u);
    EXPECT_EQ(icons.given[0].image, artwork("Dark"));
}

TEST_F(DockActionsTest, FailedSigningShowsTheToolsWordsAndRecordsNothing) {
    fixedUuid = "AAAAAAAA-0000-4000-8000-000000000001";
    tools.failures["codesign --force --sign - " + bundleOf(fixedUuid).string()] = 1;
    tools.failureText = "bundle format unrecognized";
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", "bundle format unrecognized")});
    EXPECT_TRUE(fs::exists(bundleOf(fixedUuid) / "Contents" / "Info.plist"));
    EXPECT_TRUE(recorded().empty());
    EXPECT_TRUE(icons.given.empty());
    settle();
    EXPECT_TRUE(tools.callsOf("killall").empty());
}

TEST_F(DockActionsTest, FolderThatCannotBeMadeShowsTheSystemsReason) {
    testing::writeFile(folder.path() / "share", "a file in the way");
    actions().addSeparator();
    ASSERT_EQ(line.reports.size(), 1u);
    EXPECT_EQ(line.last(), L("s043", posixError(ENOTDIR).description));
    EXPECT_TRUE(tools.calls.empty());
}

TEST_F(DockActionsTest, RefusedIconLeavesTheSignedBundleUnrecordedAndOutOfTheDock) {
    fixedUuid = "AAAAAAAA-0000-4000-8000-000000000002";
    icons.refuse = true;
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s039")});
    EXPECT_TRUE(fs::exists(bundleOf(fixedUuid)));
    EXPECT_EQ(tools.calls, Strings{"codesign --force --sign - " + bundleOf(fixedUuid).string()});
    EXPECT_TRUE(recorded().empty());
    settle();
    EXPECT_EQ(tools.calls.size(), 1u);
}

TEST_F(DockActionsTest, MissingArtworkIsAnIconFailure) {
    // A resource folder with the template but without any artwork.
    const fs::path resources = folder.path() / "resources";
    fs::create_directories(resources / "SeparatorTemplate");
    fs::copy(*separatorTemplate(mainBundle()), resources / "SeparatorTemplate" / "SeparatorTemplate.app",
             fs::copy_options::recursive);
    const Bundle withoutArtwork(resources, {});
    bundle = &withoutArtwork;
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s039")});
    EXPECT_TRUE(icons.given.empty());
}

TEST_F(DockActionsTest, ArtworkThatIsNoImageIsAnIconFailure) {
    const fs::path resources = folder.path() / "resources";
    fs::create_directories(resources / "SeparatorTemplate");
    fs::copy(*separatorTemplate(mainBundle()), resources / "SeparatorTemplate" / "SeparatorTemplate.app",
             fs::copy_options::recursive);
    testing::writeFile(resources / "SeparatorLight.png", "not an image");
    const Bundle brokenArtwork(resources, {});
    bundle = &brokenArtwork;
    EXPECT_FALSE(actions().setSeparatorIcon(folder.path()));
    actions().addSeparator();
    EXPECT_EQ(line.reports, Strings{L("s039")});
}

TEST_F(DockActionsTest, FailedAppendLeavesTheSeparatorRecorded) {
    tools.exportOutput = "garbage";
    actions().addSeparator();
    settle();
    EXPECT_EQ(recorded().size(), 1u);
    EXPECT_EQ(line.reports, (Strings{L("s041"), L("s113")}));
}

TEST_F(DockActionsTest, NewSeparatorIsAppendedToTheRecordedOnes) {
    record({"/old/one"});
    actions().addSeparator();
    const Strings paths = recorded();
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[0], "/old/one");
}

// The appearance.

TEST_F(DockActionsTest, SameThemeAndCurrentArtworkChangeNothingAndRestartNothing) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    defaults.set(settings::kSeparatorTheme, PlistValue("Light"));
    defaults.set(settings::kSeparatorArtworkVersion, PlistValue(6));
    actions().redrawSeparators();
    settle();
    EXPECT_EQ(appearanceFollowed, 1);
    EXPECT_TRUE(tools.calls.empty());
    EXPECT_TRUE(icons.given.empty());
}

TEST_F(DockActionsTest, OlderArtworkVersionRedrawsSeparatorsInTheDockAndRestartsOnce) {
    const fs::path first = folder.path() / "A.app";
    const fs::path second = folder.path() / "B.app";
    record({first.string(), second.string()});
    tools.setApps({separatorAt(first.string()), spacerTile(kSpacerTile, 3), separatorAt(second.string())});
    defaults.set(settings::kSeparatorTheme, PlistValue("Light"));
    defaults.set(settings::kSeparatorArtworkVersion, PlistValue(5));
    actions().redrawSeparators();
    settle();
    ASSERT_EQ(icons.given.size(), 2u);
    EXPECT_EQ(icons.given[0].target, first);
    EXPECT_EQ(icons.given[1].target, second);
    EXPECT_EQ(tools.calls, (Strings{"defaults export com.apple.dock -", "killall -KILL Dock"}));
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(DockActionsTest, NewThemeRedrawsWithItsArtworkAndIsStored) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    defaults.set(settings::kSeparatorTheme, PlistValue("Light"));
    defaults.set(settings::kSeparatorArtworkVersion, PlistValue(6));
    interfaceStyle = "Dark";
    actions().redrawSeparators();
    ASSERT_EQ(icons.given.size(), 1u);
    EXPECT_EQ(icons.given[0].image, artwork("Dark"));
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Dark");
}

TEST_F(DockActionsTest, AbsentVersionForcesARedraw) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    defaults.set(settings::kSeparatorTheme, PlistValue("Light"));
    actions().redrawSeparators();
    EXPECT_EQ(icons.given.size(), 1u);
}

TEST_F(DockActionsTest, SeparatorDraggedOutOfTheDockIsSkippedWithoutError) {
    record({"/s/Gone.app", "/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    actions().redrawSeparators();
    settle();
    ASSERT_EQ(icons.given.size(), 1u);
    EXPECT_EQ(icons.given[0].target, fs::path("/s/A.app"));
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(DockActionsTest, NothingLeftInTheDockStoresTheThemeWithoutRestart) {
    record({"/s/Gone.app"});
    tools.setApps({spacerTile(kSpacerTile, 1)});
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(tools.callsOf("killall").empty());
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
}

TEST_F(DockActionsTest, WithoutSeparatorsOnlyThemeAndVersionAreStored) {
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(tools.calls.empty());
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(DockActionsTest, UnreadableDockChangesNoIconButStoresTheTheme) {
    record({"/s/A.app"});
    tools.exportOutput = "garbage";
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(icons.given.empty());
    EXPECT_TRUE(line.reports.empty());
    EXPECT_TRUE(tools.callsOf("killall").empty());
    EXPECT_EQ(defaults.integer(settings::kSeparatorArtworkVersion), 6);
}

TEST_F(DockActionsTest, RefusedIconKeepsTheOldThemeSoTheNextChangeTriesAgain) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    defaults.set(settings::kSeparatorTheme, PlistValue("Dark"));
    icons.refuse = true;
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(tools.callsOf("killall").empty());
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Dark");
    EXPECT_EQ(defaults.object(settings::kSeparatorArtworkVersion), std::nullopt);
}

TEST_F(DockActionsTest, ThemeChangeRedrawsAfterFourTenthsOfASecond) {
    actions().themeChanged();
    scheduler.advance(std::chrono::milliseconds(399));
    EXPECT_EQ(appearanceFollowed, 0);
    scheduler.advance(std::chrono::milliseconds(1));
    EXPECT_EQ(appearanceFollowed, 1);
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), "Light");
}

TEST_F(DockActionsTest, ThemeChangeDoesNothingOnceTheActionsAreGone) {
    actions().themeChanged();
    actions_.reset();
    scheduler.advance(std::chrono::milliseconds(400));
    EXPECT_EQ(appearanceFollowed, 0);
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), std::nullopt);
}

// Spacers.

TEST_F(DockActionsTest, SmallSpacerIsAnnouncedAppendedAndConfirmed) {
    tools.setApps({});
    actions().smallSpacer();
    EXPECT_EQ(line.reports, Strings{L("s114")});
    settle();
    EXPECT_EQ(line.reports, (Strings{L("s114"), L("s115")}));
    EXPECT_EQ(tools.apps, Array{spacerTile(kSmallSpacerTile, 42)});
}

TEST_F(DockActionsTest, BigSpacerIsANormalSpacer) {
    tools.setApps({});
    actions().bigSpacer();
    settle();
    EXPECT_EQ(tools.apps, Array{spacerTile(kSpacerTile, 42)});
}

TEST_F(DockActionsTest, SpacerGuidIsNeverZero) {
    tools.setApps({});
    drawn = 0;
    actions().spacer("spacer-tile");
    drawn = 4294967294u;
    actions().spacer("spacer-tile");
    settle();
    EXPECT_EQ(tools.apps, (Array{spacerTile(kSpacerTile, 1), spacerTile(kSpacerTile, 4294967295u)}));
}

TEST_F(DockActionsTest, FailedSpacerAppendShowsTheCoordinatorsError) {
    tools.exportOutput = serializePropertyListXml(Dictionary{});
    actions().bigSpacer();
    settle();
    EXPECT_EQ(line.last(), L("s120"));
}

// Removing a separator.

TEST_F(DockActionsTest, RemovalTakesTheNewestSeparatorStillInTheDock) {
    record({"/s/Old.app", "/s/New.app"});
    const TileRecord other = spacerTile(kSpacerTile, 5);
    tools.setApps({separatorAt("/s/Old.app"), other});
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s045")});
    EXPECT_EQ(tools.apps, Array{other});
    EXPECT_EQ(recorded(), Strings{"/s/New.app"});
    EXPECT_EQ(tools.calls, (Strings{"defaults export com.apple.dock -", kReplace, "killall Dock"}));
}

TEST_F(DockActionsTest, RemovalTakesEveryTileOfTheSeparator) {
    record({"/s/A.app", "/s/B.app"});
    tools.setApps({separatorAt("/s/B.app"), separatorAt("/s/A.app"), separatorAt("/s/B.app/")});
    actions().removeSeparator();
    EXPECT_EQ(tools.apps, Array{separatorAt("/s/A.app")});
    EXPECT_EQ(recorded(), Strings{"/s/A.app"});
}

TEST_F(DockActionsTest, RemovalDropsEveryRecordOfThePath) {
    record({"/s/A.app", "/s/B.app", "/s/A.app"});
    tools.setApps({separatorAt("/s/A.app"), separatorAt("/s/B.app")});
    actions().removeSeparator();
    EXPECT_EQ(recorded(), Strings{"/s/B.app"});
    EXPECT_EQ(tools.apps, Array{separatorAt("/s/B.app")});
}

TEST_F(DockActionsTest, RemovalWithNoRecordedSeparatorInTheDockChangesNothing) {
    record({"/s/Gone.app"});
    tools.setApps({spacerTile(kSpacerTile, 1)});
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s044")});
    EXPECT_EQ(tools.calls, Strings{"defaults export com.apple.dock -"});
    EXPECT_EQ(recorded(), Strings{"/s/Gone.app"});
}

TEST_F(DockActionsTest, RemovalWithNothingRecordedSaysThereIsNothing) {
    tools.setApps({separatorAt("/s/A.app")});
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s044")});
}

TEST_F(DockActionsTest, RemovalWithAnUnreadableDockShowsTheReason) {
    record({"/s/A.app"});
    tools.exportOutput = serializePropertyListXml(Dictionary{});
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", L("s113"))});
    EXPECT_EQ(recorded(), Strings{"/s/A.app"});
}

TEST_F(DockActionsTest, FailedRewriteKeepsTheRecord) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    tools.failures[kReplace] = 1;
    tools.failureText = "Could not write domain com.apple.dock";
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", "Could not write domain com.apple.dock")});
    EXPECT_EQ(recorded(), Strings{"/s/A.app"});
    EXPECT_TRUE(tools.callsOf("killall").empty());
}

TEST_F(DockActionsTest, FailedRestartAfterTheRewriteKeepsWhatWasWritten) {
    record({"/s/A.app"});
    tools.setApps({separatorAt("/s/A.app")});
    tools.failures["killall Dock"] = 1;
    tools.failureText = "No matching processes belonging to you were found\n";
    actions().removeSeparator();
    EXPECT_EQ(line.reports, Strings{L("s043", "No matching processes belonging to you were found\n")});
    EXPECT_TRUE(tools.apps.empty());
    EXPECT_TRUE(recorded().empty());
}

// Undoing a spacer.

class UndoSpacerTest : public DockActionsTest {
protected:
    void expectOrder(const Strings& order) { defaults.set(settings::kDockExpectedOrder, PlistValue::stringArray(order)); }
    const TileRecord app = PlistValue(Dictionary{{"tile-type", "file-tile"}, {"GUID", 7}});
    const TileRecord small = spacerTile(kSmallSpacerTile, 11);
    const TileRecord big = spacerTile(kSpacerTile, 12);
};

TEST_F(UndoSpacerTest, WithoutARecordedOrderItRefuses) {
    tools.setApps({app, small});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s116")});
    EXPECT_TRUE(tools.calls.empty());
}

TEST_F(UndoSpacerTest, EmptyRecordedOrderRefusesToo) {
    expectOrder({});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s116")});
}

TEST_F(UndoSpacerTest, UnchangedDockEndingInASmallSpacerLosesItAndTheOrderIsCleared) {
    tools.setApps({app, big, small});
    expectOrder({"file-tile|7", "spacer-tile", "small-spacer-tile"});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s118")});
    EXPECT_EQ(tools.apps, (Array{app, big}));
    EXPECT_EQ(defaults.object(settings::kDockExpectedOrder), std::nullopt);
    EXPECT_EQ(tools.calls, (Strings{"defaults export com.apple.dock -", kReplace, "killall Dock"}));

    actions().undoSpacer();
    EXPECT_EQ(line.last(), L("s116"));
}

TEST_F(UndoSpacerTest, MovedTileBlocksTheUndo) {
    tools.setApps({big, app, small});
    expectOrder({"file-tile|7", "spacer-tile", "small-spacer-tile"});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s117")});
    EXPECT_TRUE(tools.callsOf("defaults write").empty());
    EXPECT_EQ(tools.apps.size(), 3u);
}

TEST_F(UndoSpacerTest, SwappedSpacersOfOneTypeDoNotBlockTheUndo) {
    const TileRecord other = spacerTile(kSpacerTile, 99);
    tools.setApps({app, other, big});
    expectOrder({"file-tile|7", "spacer-tile", "spacer-tile"});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s118")});
    EXPECT_EQ(tools.apps, (Array{app, other}));
}

TEST_F(UndoSpacerTest, LastTileThatIsNoSpacerIsNotUndone) {
    tools.setApps({small, app});
    expectOrder({"small-spacer-tile", "file-tile|7"});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s117")});
    EXPECT_TRUE(tools.callsOf("defaults write").empty());
}

TEST_F(UndoSpacerTest, EmptyDockIsNotUndone) {
    tools.setApps({});
    expectOrder({"small-spacer-tile"});
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s117")});
}

TEST_F(UndoSpacerTest, UnreadableDockShowsTheUndoFailure) {
    expectOrder({"small-spacer-tile"});
    tools.exportOutput = "garbage";
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s133", L("s113"))});
    EXPECT_TRUE(defaults.stringArray(settings::kDockExpectedOrder));
}

TEST_F(UndoSpacerTest, FailedRewriteKeepsTheRecordedOrder) {
    tools.setApps({app, small});
    expectOrder({"file-tile|7", "small-spacer-tile"});
    tools.failures[kReplace] = 1;
    tools.failureText = "no";
    actions().undoSpacer();
    EXPECT_EQ(line.reports, Strings{L("s133", "no")});
    EXPECT_TRUE(defaults.stringArray(settings::kDockExpectedOrder));
}

// Without a Dock.

TEST_F(DockActionsTest, WithoutADockNoCommandRunsAnyTool) {
    dockAvailable = false;
    record({"/s/A.app"});
    defaults.set(settings::kDockExpectedOrder, PlistValue::stringArray({"spacer-tile"}));
    actions().addSeparator();
    actions().smallSpacer();
    actions().bigSpacer();
    actions().removeSeparator();
    actions().undoSpacer();
    actions().redrawSeparators();
    settle();
    EXPECT_TRUE(tools.calls.empty());
    EXPECT_TRUE(line.reports.empty());
    EXPECT_EQ(recorded(), Strings{"/s/A.app"});
    EXPECT_FALSE(fs::exists(folder.path() / "share"));
    EXPECT_EQ(appearanceFollowed, 1);
    EXPECT_EQ(defaults.string(settings::kSeparatorTheme), std::nullopt);
}

// The synchronous helpers.

TEST_F(DockActionsTest, RunAndDockTilesUseTheRunnersTools) {
    tools.setApps({spacerTile(kSpacerTile, 1)});
    EXPECT_TRUE(actions().run(tools.tool("defaults"), {"export", "com.apple.dock", "-"}));
    EXPECT_EQ(actions().dockTiles()->size(), 1u);
    EXPECT_EQ(DockActions::dockIdentity(spacerTile(kSpacerTile, 1)), "spacer-tile");
    EXPECT_EQ(DockActions::tilePath(separatorAt("/a/b")), "/a/b");
}

TEST_F(DockActionsTest, SeparatorRootAndThemeFollowTheirSources) {
    EXPECT_EQ(actions().separatorRoot(), folder.path() / "share" / "Vantle Control" / "Separators");
    EXPECT_EQ(actions().separatorTheme(), "Light");
    interfaceStyle = "Dark";
    EXPECT_EQ(actions().separatorTheme(), "Dark");
}

}  // namespace
}  // namespace vantle
