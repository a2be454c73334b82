#include "dock/dock_coordinator.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#include "dock/file_url.h"
#include "dock/testing/fake_dock_tools.h"
#include "dock/testing/main_queue.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"

namespace vantle {
namespace {

using Dictionary = PlistValue::Dictionary;
using Array = PlistValue::Array;
using std::chrono::milliseconds;

const std::string kAppend = "defaults write com.apple.dock persistent-apps -array-add <xml>";

TileRecord spacer(std::string_view type, std::uint32_t guid = 9) {
    return spacerTile(type, guid);
}

TileRecord app(const std::string& url) {
    return separatorTile(url, "Label");
}

class DockCoordinatorTest : public ::testing::Test {
protected:
    DockCoordinator& coordinator() {
        if (!coordinator_) {
            coordinator_ = std::make_unique<DockCoordinator>(tools, mainQueue.poster(), [this](milliseconds pause) {
                std::lock_guard lock(tools.mutex);
                sleeps.push_back(pause);
            });
            coordinator_->setCompleted([this](const DockCoordinator::Result& result) {
                results.push_back(result);
                resultThreads.push_back(std::this_thread::get_id());
            });
        }
        return *coordinator_;
    }

    // Appends and waits for the result, delivered on this thread.
    DockCoordinator::Result append(TileRecord tile, std::string message = "added") {
        const std::size_t before = results.size();
        coordinator().append(std::move(tile), std::move(message));
        coordinator().waitUntilIdle();
        mainQueue.drain();
        EXPECT_EQ(results.size(), before + 1);
        return results.back();
    }

    int count(const TileRecord& tile) { return DockCoordinator::count(tile, tools.apps); }

    testing::FakeDockTools tools;
    testing::MainQueue mainQueue;
    std::vector<milliseconds> sleeps;
    std::vector<DockCoordinator::Result> results;
    std::vector<std::thread::id> resultThreads;
    std::unique_ptr<DockCoordinator> coordinator_;
};

TEST_F(DockCoordinatorTest, SpacerAppendExpectsOneMoreThanTheSpacersOfItsType) {
    tools.setApps({spacer(kSpacerTile, 1), spacer(kSpacerTile, 2), spacer(kSpacerTile, 3), spacer(kSmallSpacerTile)});
    EXPECT_EQ(count(spacer(kSpacerTile)), 3);
    const auto result = append(spacer(kSpacerTile));
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, "added");
    EXPECT_EQ(count(spacer(kSpacerTile)), 4);
    EXPECT_EQ(tools.callsOf(kAppend).size(), 1u);
}

TEST_F(DockCoordinatorTest, SpacerOfTheOtherTypeDoesNotCount) {
    tools.setApps({spacer(kSmallSpacerTile), spacer(kSmallSpacerTile), spacer(kSmallSpacerTile)});
    EXPECT_EQ(count(spacer(kSpacerTile)), 0);
    EXPECT_TRUE(append(spacer(kSpacerTile)));
    EXPECT_EQ(count(spacer(kSpacerTile)), 1);
    EXPECT_EQ(count(spacer(kSmallSpacerTile)), 3);
}

TEST_F(DockCoordinatorTest, RecordsWithoutTypeMatchOnlyTilesWithoutType) {
    const Array list{Dictionary{{"GUID", 1}}, Dictionary{{"tile-type", 5}}, spacer(kSpacerTile)};
    EXPECT_EQ(DockCoordinator::count(TileRecord(Dictionary{}), list), 2);
}

TEST_F(DockCoordinatorTest, SeparatorCountsOnlyRecordsWithItsStandardisedPath) {
    const Array list{app("file:///S/A.app/"), app("file:///S/./A.app"), app("file:///S/B.app/"),
                     app("file:///S/A.app with space"), spacer(kSpacerTile)};
    EXPECT_EQ(DockCoordinator::count(app("file:///S/A.app/"), list), 2);
}

TEST_F(DockCoordinatorTest, RecordWhoseUrlIsNoUrlNeverCounts) {
    const Array list{app("/S/A app"), app("/S/A app")};
    EXPECT_EQ(DockCoordinator::count(app("file:///S/A%20app/"), list), 0);
}

TEST_F(DockCoordinatorTest, SuccessfulAppendFreezesReadsWritesRestartsAndReadsTwice) {
    tools.setApps({});
    ASSERT_TRUE(append(spacer(kSmallSpacerTile)));
    EXPECT_EQ(tools.calls, (std::vector<std::string>{"killall -STOP Dock", "defaults export com.apple.dock -", kAppend,
                                                     "killall -KILL Dock", "defaults export com.apple.dock -",
                                                     "defaults export com.apple.dock -"}));
    EXPECT_EQ(sleeps, (std::vector<milliseconds>{milliseconds(1200), milliseconds(400)}));
    EXPECT_EQ(tools.frozenAtWrites, (std::vector<bool>{true}));
    EXPECT_FALSE(tools.frozen);
}

TEST_F(DockCoordinatorTest, WrittenTileIsTheRecordAsXml) {
    tools.setApps({});
    const TileRecord tile = app("file:///S/A.app/");
    ASSERT_TRUE(append(tile));
    EXPECT_EQ(tools.apps, (Array{tile}));
}

TEST_F(DockCoordinatorTest, TileShownFirstInTheSecondAttemptIsNotWrittenAgain) {
    tools.setApps({});
    tools.hiddenReadings = {2, 3};
    const auto result = append(spacer(kSpacerTile));
    ASSERT_TRUE(result);
    EXPECT_EQ(tools.callsOf(kAppend).size(), 1u);
    EXPECT_EQ(tools.restarts, 2);
    EXPECT_EQ(count(spacer(kSpacerTile)), 1);
}

TEST_F(DockCoordinatorTest, FailedWriteAfterFreezeThawsExactlyOnceAndReportsTheWriteError) {
    tools.setApps({});
    tools.failures[kAppend] = 1;
    tools.failureStatus = 6;
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s119", 6)}));
    EXPECT_EQ(tools.callsOf("killall -CONT Dock").size(), 1u);
    EXPECT_TRUE(tools.callsOf("killall -KILL").empty());
    EXPECT_FALSE(tools.frozen);
    EXPECT_TRUE(tools.apps.empty());
}

TEST_F(DockCoordinatorTest, FailedFreezeSendsNoThaw) {
    tools.setApps({});
    tools.failures["killall -STOP Dock"] = 1;
    tools.failures[kAppend] = 1;
    EXPECT_FALSE(append(spacer(kSpacerTile)));
    EXPECT_TRUE(tools.callsOf("killall -CONT").empty());
}

TEST_F(DockCoordinatorTest, FailedFreezeIsIgnoredOtherwise) {
    tools.setApps({});
    tools.failures["killall -STOP Dock"] = 1;
    EXPECT_TRUE(append(spacer(kSpacerTile)));
}

TEST_F(DockCoordinatorTest, TileShownInTheFirstReadingOnlyFailsTheAttempt) {
    tools.setApps({});
    tools.hiddenReadings = {3};
    EXPECT_TRUE(append(spacer(kSpacerTile)));
    EXPECT_EQ(tools.restarts, 2);
    EXPECT_EQ(tools.callsOf(kAppend).size(), 1u);
}

TEST_F(DockCoordinatorTest, TileShownInTheFirstReadingOnlyEveryTimeEndsInFailure) {
    tools.setApps({});
    tools.hiddenReadings = {3, 6, 9};
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s121")}));
}

TEST_F(DockCoordinatorTest, ThreeFailedAttemptsGiveTheNotTakenErrorAfterThreeRestarts) {
    tools.setApps({spacer(kSmallSpacerTile)});
    tools.droppingRestarts = 3;
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s121")}));
    EXPECT_EQ(tools.restarts, 3);
    EXPECT_EQ(tools.callsOf(kAppend).size(), 3u);
    EXPECT_EQ(tools.frozenAtWrites, (std::vector<bool>{true, true, true}));
    EXPECT_TRUE(tools.callsOf("killall -CONT").empty());
    EXPECT_EQ(sleeps.size(), 6u);
}

TEST_F(DockCoordinatorTest, DockThatDropsTheTileOnceGetsItWrittenAgain) {
    tools.setApps({});
    tools.droppingRestarts = 1;
    EXPECT_TRUE(append(spacer(kSpacerTile)));
    EXPECT_EQ(tools.callsOf(kAppend).size(), 2u);
    EXPECT_EQ(count(spacer(kSpacerTile)), 1);
}

TEST_F(DockCoordinatorTest, ExportThatIsNoPropertyListThawsAndChangesNothing) {
    tools.setApps({spacer(kSpacerTile)});
    tools.exportOutput = "garbage";
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().domain, "NSCocoaErrorDomain");
    EXPECT_EQ(result.error().description, L("s113"));
    EXPECT_EQ(tools.calls, (std::vector<std::string>{"killall -STOP Dock", "defaults export com.apple.dock -",
                                                     "killall -CONT Dock"}));
    EXPECT_EQ(tools.apps.size(), 1u);
}

TEST_F(DockCoordinatorTest, EmptyDomainIsTheAppListErrorNotAnEmptyList) {
    tools.exportOutput = serializePropertyListXml(Dictionary{});
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s120")}));
    EXPECT_TRUE(tools.callsOf("defaults write").empty());
}

TEST_F(DockCoordinatorTest, AppListOfTheWrongShapeIsTheAppListError) {
    tools.exportOutput = serializePropertyListXml(Dictionary{{"persistent-apps", Array{PlistValue("x")}}});
    EXPECT_EQ(append(spacer(kSpacerTile)).error().description, L("s120"));
    tools.exportOutput = serializePropertyListXml(Dictionary{{"persistent-apps", "x"}});
    EXPECT_EQ(append(spacer(kSpacerTile)).error().description, L("s120"));
    EXPECT_TRUE(tools.callsOf("defaults write").empty());
    EXPECT_EQ(tools.callsOf("killall -CONT").size(), 2u);
}

TEST_F(DockCoordinatorTest, FailedReadingAfterTheRestartSendsNoThaw) {
    tools.setApps({});
    tools.failingReadings = {2};
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().description, L("s119", 1));
    EXPECT_TRUE(tools.callsOf("killall -CONT").empty());
    EXPECT_EQ(sleeps, (std::vector<milliseconds>{milliseconds(1200)}));
}

TEST_F(DockCoordinatorTest, DefaultsThatCannotStartIsTheStartError) {
    tools.missingTools.insert("defaults");
    const auto result = append(spacer(kSpacerTile));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), posixError(ENOENT));
    EXPECT_EQ(tools.callsOf("killall -CONT").size(), 1u);
}

TEST_F(DockCoordinatorTest, FailedRestartIsIgnored) {
    tools.setApps({});
    tools.failures["killall -KILL Dock"] = 3;
    // Without a restart the fake Dock keeps what was written, so the tile shows.
    EXPECT_TRUE(append(spacer(kSpacerTile)));
}

TEST_F(DockCoordinatorTest, ResultsArriveOnTheInterfaceThreadOnlyWhenItRunsThem) {
    tools.setApps({});
    coordinator().append(spacer(kSpacerTile), "one");
    coordinator().waitUntilIdle();
    EXPECT_TRUE(results.empty());
    EXPECT_EQ(mainQueue.drain(), 1);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(resultThreads.front(), std::this_thread::get_id());
}

TEST_F(DockCoordinatorTest, WithoutCompletionAResultIsDropped) {
    tools.setApps({});
    coordinator().setCompleted(nullptr);
    coordinator().append(spacer(kSpacerTile), "one");
    coordinator().waitUntilIdle();
    EXPECT_EQ(mainQueue.drain(), 1);
    EXPECT_TRUE(results.empty());
}

TEST_F(DockCoordinatorTest, ResultArrivingAfterTheCoordinatorIsGoneCallsNothing) {
    tools.setApps({});
    coordinator().append(spacer(kSpacerTile), "one");
    coordinator().waitUntilIdle();
    coordinator_.reset();
    EXPECT_EQ(mainQueue.drain(), 1);
    EXPECT_TRUE(results.empty());
}

TEST_F(DockCoordinatorTest, AppendsAndRestartAskedAtOnceRunOneAfterAnotherInOrder) {
    tools.setApps({});
    const auto caller = std::this_thread::get_id();
    coordinator().append(spacer(kSpacerTile), "first");
    coordinator().append(spacer(kSmallSpacerTile), "second");
    coordinator().refreshAppearance();
    coordinator().waitUntilIdle();
    mainQueue.drain();

    ASSERT_EQ(results.size(), 2u);
    EXPECT_EQ(*results[0], "first");
    EXPECT_EQ(*results[1], "second");
    EXPECT_EQ(resultThreads, (std::vector<std::thread::id>{caller, caller}));
    const std::vector<std::string> one{"killall -STOP Dock", "defaults export com.apple.dock -", kAppend,
                                       "killall -KILL Dock", "defaults export com.apple.dock -",
                                       "defaults export com.apple.dock -"};
    std::vector<std::string> expected = one;
    expected.insert(expected.end(), one.begin(), one.end());
    expected.push_back("killall -KILL Dock");
    EXPECT_EQ(tools.calls, expected);
    EXPECT_EQ(sleeps.back(), milliseconds(1200));
}

TEST_F(DockCoordinatorTest, RefreshRestartsTheDockWaitsAndReportsNothing) {
    tools.failures["killall -KILL Dock"] = 1;
    coordinator().refreshAppearance();
    coordinator().waitUntilIdle();
    EXPECT_EQ(tools.calls, (std::vector<std::string>{"killall -KILL Dock"}));
    EXPECT_EQ(sleeps, (std::vector<milliseconds>{milliseconds(1200)}));
    EXPECT_EQ(mainQueue.drain(), 0);
}

TEST_F(DockCoordinatorTest, TilesReadsWithTheCoordinatorsErrors) {
    tools.exportOutput = serializePropertyListXml(Dictionary{{"tilesize", 4}});
    EXPECT_EQ(coordinator().tiles().error(), (CommandError{"VantleControl.Dock", 1, L("s120")}));
}

TEST_F(DockCoordinatorTest, QueueCarriesTheProgramsLabel) {
    EXPECT_EQ(coordinator().queueLabel(), "com.orlend.VantleControl.dock");
}

TEST_F(DockCoordinatorTest, PathIsTheTilePath) {
    EXPECT_EQ(DockCoordinator::path(app("file:///a/b/../c.app/")), "/a/c.app");
    EXPECT_EQ(DockCoordinator::path(spacer(kSpacerTile)), std::nullopt);
}

}  // namespace
}  // namespace vantle
