#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#include "dock/dock_coordinator.h"
#include "dock/file_url.h"
#include "dock/process_runner_linux.h"
#include "dock/testing/main_queue.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"
#include "stand_in_dock_world.h"

namespace vantle {
namespace {

using Array = PlistValue::Array;
using Dictionary = PlistValue::Dictionary;
using Strings = std::vector<std::string>;

const std::string kFrozenAppend = "defaults write com.apple.dock persistent-apps -array-add <xml> [dock stopped]";

int countOf(const Array& apps, std::string_view type) {
    return DockCoordinator::count(spacerTile(type, 1), apps);
}

// The verified append against a real stand-in Dock. Its killall returns only once the Dock runs
// again, so the pauses that wait for a real Dock to come back are skipped; the coordinator's own
// tests check that it asks for them.
class DockAppendTest : public ::testing::Test {
protected:
    explicit DockAppendTest(const Array& apps = {}) : world(apps) {
        coordinator.setCompleted([this](const DockCoordinator::Result& result) {
            results.push_back(result);
            threads.push_back(std::this_thread::get_id());
        });
    }

    DockCoordinator::Result append(TileRecord tile, std::string message = "added") {
        const std::size_t before = results.size();
        coordinator.append(std::move(tile), std::move(message));
        EXPECT_TRUE(mainQueue.runUntil([&] { return results.size() > before; }, std::chrono::seconds(60)));
        return results.size() > before ? results.back() : DockCoordinator::Result(CommandError{"timeout", 0, ""});
    }

    testing::StandInDockWorld world;
    PosixProcessRunner runner{world.toolDirectory()};
    testing::MainQueue mainQueue;
    DockCoordinator coordinator{runner, mainQueue.poster(), testing::skipDockPauses()};
    std::vector<DockCoordinator::Result> results;
    std::vector<std::thread::id> threads;
};

class DockWithSpacersTest : public DockAppendTest {
protected:
    DockWithSpacersTest()
        : DockAppendTest({spacerTile(kSpacerTile, 1), spacerTile(kSpacerTile, 2), spacerTile(kSpacerTile, 3),
                          spacerTile(kSmallSpacerTile, 4)}) {}
};

TEST_F(DockWithSpacersTest, SpacerWithThreeOfItsTypeShownExpectsFourAndGetsThem) {
    const auto result = append(spacerTile(kSpacerTile, 77));
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(*result, "added");
    EXPECT_EQ(countOf(world.apps(), kSpacerTile), 4);
    EXPECT_EQ(countOf(world.apps(), kSmallSpacerTile), 1);
    EXPECT_EQ(world.log(), (Strings{"killall -STOP Dock [dock running]",
                                    "defaults export com.apple.dock - [dock stopped]", kFrozenAppend,
                                    "killall -KILL Dock [dock stopped]",
                                    "defaults export com.apple.dock - [dock running]",
                                    "defaults export com.apple.dock - [dock running]"}));
    EXPECT_EQ(world.dockStarts(), 2);
    EXPECT_TRUE(world.dockRunning());
    EXPECT_EQ(threads, std::vector<std::thread::id>{std::this_thread::get_id()});
}

TEST_F(DockWithSpacersTest, SpacerOfTheOtherTypeIsCountedApart) {
    ASSERT_TRUE(append(spacerTile(kSmallSpacerTile, 78)));
    EXPECT_EQ(countOf(world.apps(), kSmallSpacerTile), 2);
    EXPECT_EQ(countOf(world.apps(), kSpacerTile), 3);
    EXPECT_EQ(world.logOf("defaults write").size(), 1u);
}

class DockWithSeparatorsTest : public DockAppendTest {
protected:
    static constexpr const char* kPath = "/Users/ann/Application Support/Vantle Control/Separators/X/Sep.app";
    DockWithSeparatorsTest()
        : DockAppendTest({separatorTile("file:///Users/ann/Application%20Support/Vantle%20Control/./Separators/X/Sep.app",
                                        "old"),
                          separatorTile(kPath, "not a URL"), separatorTile("file:///Applications/Other.app/", "o")}) {}
};

TEST_F(DockWithSeparatorsTest, SeparatorCountsOnlyRecordsWithItsStandardisedPath) {
    const TileRecord tile = separatorTile(fileUrlString(kPath, true), "Separator");
    EXPECT_EQ(DockCoordinator::count(tile, world.apps()), 1);
    ASSERT_TRUE(append(tile));
    EXPECT_EQ(DockCoordinator::count(tile, world.apps()), 2);
    EXPECT_EQ(world.apps().back(), tile);
    EXPECT_EQ(world.apps().size(), 4u);
}

TEST_F(DockAppendTest, TileShownFirstInTheSecondAttemptIsNotWrittenAgain) {
    world.hideAddedTileAtReadings({2, 3});
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(world.logOf("defaults write").size(), 1u);
    EXPECT_EQ(world.logOf("killall -KILL").size(), 2u);
    EXPECT_EQ(world.dockStarts(), 3);
    EXPECT_EQ(countOf(world.apps(), kSpacerTile), 1);
}

TEST_F(DockAppendTest, FailedWriteAfterAFreezeThawsOnceAndReportsTheWrite) {
    const std::string before = world.preferencesBytes();
    world.set("fail-write", "1");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s119", 1)}));
    EXPECT_EQ(world.logOf("killall -CONT"), Strings{"killall -CONT Dock [dock stopped]"});
    EXPECT_TRUE(world.logOf("killall -KILL").empty());
    EXPECT_TRUE(world.dockRunning());
    EXPECT_EQ(world.preferencesBytes(), before);
    EXPECT_EQ(world.dockStarts(), 1);
}

TEST_F(DockAppendTest, FailedFreezeMeansNoThawLater) {
    world.set("fail-killall-STOP", "1");
    world.set("fail-write", "1");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_TRUE(world.logOf("killall -CONT").empty());
    EXPECT_EQ(world.logOf("defaults write"), Strings{"defaults write com.apple.dock persistent-apps -array-add <xml> [dock running]"});
    EXPECT_TRUE(world.dockRunning());
}

TEST_F(DockAppendTest, TileShownInTheFirstReadingButNotTheSecondFailsTheAttempt) {
    world.hideAddedTileAtReadings({3});
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(world.logOf("killall -KILL").size(), 2u);
    EXPECT_EQ(world.logOf("defaults export").size(), 6u);
    EXPECT_EQ(world.logOf("defaults write").size(), 1u);
}

TEST_F(DockAppendTest, DockThatDropsTheTileEveryTimeEndsInFailureAfterThreeRestarts) {
    world.set("drop-on-start", "3");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s121")}));
    EXPECT_EQ(world.dockStarts(), 4);
    EXPECT_EQ(world.logOf("killall -KILL").size(), 3u);
    EXPECT_EQ(world.logOf("defaults write"), (Strings{kFrozenAppend, kFrozenAppend, kFrozenAppend}));
    EXPECT_TRUE(world.logOf("killall -CONT").empty());
    EXPECT_TRUE(world.dockRunning());
    EXPECT_EQ(countOf(world.apps(), kSpacerTile), 0);
}

TEST_F(DockAppendTest, DockThatDropsTheTileOnceGetsItWrittenAgain) {
    world.set("drop-on-start", "1");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_TRUE(result) << result.error().description;
    EXPECT_EQ(world.logOf("defaults write").size(), 2u);
    EXPECT_EQ(countOf(world.apps(), kSpacerTile), 1);
}

TEST_F(DockAppendTest, ExportThatIsNoPropertyListThawsAndChangesNothing) {
    world.writePreferences("this is not a property list");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"NSCocoaErrorDomain", 3840, L("s113")}));
    EXPECT_EQ(world.preferencesBytes(), "this is not a property list");
    EXPECT_EQ(world.logOf("killall -CONT").size(), 1u);
    EXPECT_TRUE(world.logOf("defaults write").empty());
    EXPECT_TRUE(world.dockRunning());
}

TEST_F(DockAppendTest, EmptyDomainIsTheAppListErrorAndChangesNothing) {
    const std::string empty = serializePropertyListXml(Dictionary{});
    world.writePreferences(empty);
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), (CommandError{"VantleControl.Dock", 1, L("s120")}));
    EXPECT_EQ(world.preferencesBytes(), empty);
    EXPECT_TRUE(world.logOf("defaults write").empty());
    EXPECT_TRUE(world.dockRunning());
}

TEST_F(DockAppendTest, AppListThatIsNoArrayOfDictionariesIsTheAppListError) {
    const std::string wrong =
        serializePropertyListXml(Dictionary{{"persistent-apps", Array{Dictionary{}, PlistValue(3)}}});
    world.writePreferences(wrong);
    EXPECT_EQ(append(spacerTile(kSpacerTile, 5)).error().description, L("s120"));
    EXPECT_EQ(world.preferencesBytes(), wrong);
    EXPECT_TRUE(world.dockRunning());
}

TEST_F(DockAppendTest, MissingDefaultsToolIsTheStartErrorAndTheDockIsThawed) {
    std::filesystem::remove(world.toolDirectory() / "defaults");
    const auto result = append(spacerTile(kSpacerTile, 5));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error(), posixError(ENOENT));
    EXPECT_EQ(world.logOf("killall -CONT").size(), 1u);
    EXPECT_TRUE(world.dockRunning());
}

TEST_F(DockAppendTest, TwoAppendsAndARestartAskedAtOnceRunOneAfterAnother) {
    coordinator.append(spacerTile(kSpacerTile, 5), "first");
    coordinator.append(spacerTile(kSmallSpacerTile, 6), "second");
    coordinator.refreshAppearance();
    ASSERT_TRUE(mainQueue.runUntil([&] { return results.size() == 2; }, std::chrono::seconds(60)));
    coordinator.waitUntilIdle();
    EXPECT_EQ(mainQueue.drain(), 0);

    EXPECT_EQ(*results[0], "first");
    EXPECT_EQ(*results[1], "second");
    EXPECT_EQ(threads, (std::vector<std::thread::id>{std::this_thread::get_id(), std::this_thread::get_id()}));
    const Strings one{"killall -STOP Dock [dock running]", "defaults export com.apple.dock - [dock stopped]",
                      kFrozenAppend, "killall -KILL Dock [dock stopped]",
                      "defaults export com.apple.dock - [dock running]",
                      "defaults export com.apple.dock - [dock running]"};
    Strings expected = one;
    expected.insert(expected.end(), one.begin(), one.end());
    expected.push_back("killall -KILL Dock [dock running]");
    EXPECT_EQ(world.log(), expected);
    EXPECT_EQ(world.dockStarts(), 4);
    EXPECT_EQ(world.apps(), (Array{spacerTile(kSpacerTile, 5), spacerTile(kSmallSpacerTile, 6)}));
}

TEST_F(DockAppendTest, RestartForNewArtworkKillsTheDockAndReportsNothing) {
    // Made without a sleep of its own, this coordinator waits for the Dock the way the program's does.
    DockCoordinator waiting{runner, mainQueue.poster()};
    const auto started = std::chrono::steady_clock::now();
    waiting.refreshAppearance();
    waiting.waitUntilIdle();
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(1200));
    EXPECT_EQ(world.log(), Strings{"killall -KILL Dock [dock running]"});
    EXPECT_EQ(world.dockStarts(), 2);
    EXPECT_EQ(mainQueue.drain(), 0);
}

}  // namespace
}  // namespace vantle
