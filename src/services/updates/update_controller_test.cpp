#include "services/updates/update_controller.h"

#include <gtest/gtest.h>

#include <vector>

#include "localization/localization.h"
#include "services/updates/testing/fake_updater.h"
#include "services/updates/testing/recording_update_host.h"

namespace vantle {
namespace {

using testing::FakeUpdater;

class UpdateControllerTest : public ::testing::Test {
protected:
    FakeUpdater& updater() {
        EXPECT_NE(fake, nullptr) << "the controller has not made its updater yet";
        return *fake;
    }

    testing::RecordingUpdateHost host;
    // What ran before a relaunch, with whether the controller had already said it was installing.
    std::vector<bool> preparations;
    FakeUpdater* fake = nullptr;
    int updatersMade = 0;
    UpdateController controller{[this](UpdaterDelegate& delegate) {
                                    ++updatersMade;
                                    auto made = std::make_unique<FakeUpdater>(delegate);
                                    fake = made.get();
                                    return made;
                                },
                                [this] { preparations.push_back(controller.installingUpdate()); }, host};
};

TEST_F(UpdateControllerTest, TheUpdaterIsMadeOnFirstUseAndOnlyOnce) {
    EXPECT_EQ(updatersMade, 0);
    controller.presentation();
    controller.startUpdates();
    controller.checkUpdates();
    EXPECT_EQ(updatersMade, 1);
    EXPECT_EQ(&updater().delegate, &controller);
}

TEST_F(UpdateControllerTest, AStartWithAutomaticChecksOffRunsNoCheck) {
    controller.startUpdates();
    EXPECT_EQ(updater().starts, 1);
    EXPECT_EQ(updater().checks, 0);
    EXPECT_EQ(updater().backgroundChecks, 0);
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(UpdateControllerTest, AStartWithAutomaticChecksOnRunsABackgroundCheck) {
    controller.presentation();
    updater().automatic = true;
    controller.startUpdates();
    EXPECT_EQ(updater().backgroundChecks, 1);
    EXPECT_EQ(updater().checks, 0);
}

TEST_F(UpdateControllerTest, AFailedStartShowsTheErrorAndStops) {
    controller.presentation();
    updater().automatic = true;
    updater().startError = UpdateError{"Elsewhere", 7, "no feed"};
    controller.startUpdates();
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s003", "no feed")});
    EXPECT_EQ(updater().backgroundChecks, 0);
}

TEST_F(UpdateControllerTest, SwitchingAutomaticChecksOnSetsTheSettingAndRunsNoCheck) {
    controller.changeAutomaticUpdates(true);
    EXPECT_TRUE(updater().automatic);
    EXPECT_EQ(updater().settingChanges, 1);
    EXPECT_EQ(updater().checks, 0);
    EXPECT_EQ(updater().backgroundChecks, 0);
    controller.changeAutomaticUpdates(false);
    EXPECT_FALSE(updater().automatic);
}

TEST_F(UpdateControllerTest, CheckNowClosesThePopoverFirstAndThenChecks) {
    controller.checkUpdates();
    EXPECT_EQ(host.events, std::vector<std::string>{"closePopover"});
    EXPECT_EQ(updater().checks, 1);
    EXPECT_EQ(updater().backgroundChecks, 0);
}

TEST_F(UpdateControllerTest, PresentationFollowsTheUpdater) {
    controller.presentation();
    updater().canCheck = false;
    updater().automatic = true;
    EXPECT_EQ(controller.presentation(), (UpdatePresentation{false, true}));
    updater().canCheck = true;
    updater().automatic = false;
    EXPECT_EQ(controller.presentation(), (UpdatePresentation{true, false}));
}

TEST_F(UpdateControllerTest, ACycleWithoutErrorShowsFinished) {
    controller.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated, std::nullopt);
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s006")});
}

TEST_F(UpdateControllerTest, ACycleThatFindsNothingNewShowsUpToDateNotAFailure) {
    controller.updaterDidFinishUpdateCycle(UpdateCheck::background,
                                           UpdateError{std::string(kUpdaterErrorDomain), kNoUpdateErrorCode, "x"});
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s004")});
    EXPECT_NE(L("s004"), L("s005", "x"));
}

TEST_F(UpdateControllerTest, ANoUpdateCodeFromAnotherDomainIsAFailureWithItsDescription) {
    controller.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated,
                                           UpdateError{"NSURLErrorDomain", kNoUpdateErrorCode, "offline"});
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s005", "offline")});
}

TEST_F(UpdateControllerTest, AnyOtherErrorIsAFailureWithItsDescription) {
    controller.updaterDidFinishUpdateCycle(
        UpdateCheck::userInitiated, UpdateError{std::string(kUpdaterErrorDomain), kFeedUnreachableErrorCode, "404"});
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s005", "404")});
    EXPECT_NE(host.messages.back().find("404"), std::string::npos);
}

TEST_F(UpdateControllerTest, TheOfferStaysOnTheLineWhenItsCycleEndsAndTheNextCycleReplacesIt) {
    const UpdateOffer offer{"2", "2.0", "https://vantle.example/2.tar.gz", std::nullopt};
    controller.updaterDidFindValidUpdate(offer);
    controller.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated, std::nullopt);
    EXPECT_EQ(host.events, (std::vector<std::string>{"offer"}));
    controller.updaterDidFinishUpdateCycle(UpdateCheck::background,
                                           UpdateError{std::string(kUpdaterErrorDomain), kNoUpdateErrorCode, "x"});
    EXPECT_EQ(host.events, (std::vector<std::string>{"offer", "message"}));
    EXPECT_EQ(host.messages, std::vector<std::string>{L("s004")});
}

TEST_F(UpdateControllerTest, AFoundUpdateIsOffered) {
    const UpdateOffer offer{"2", "2.0", "https://vantle.example/2.tar.gz", std::nullopt};
    controller.updaterDidFindValidUpdate(offer);
    ASSERT_EQ(host.offers.size(), 1u);
    EXPECT_EQ(host.offers[0], offer);
}

TEST_F(UpdateControllerTest, AnUpdateAboutToRelaunchLetsTheApplicationPrepareFirst) {
    EXPECT_FALSE(controller.updaterShouldPostponeRelaunchForUpdate());
    EXPECT_EQ(preparations, std::vector<bool>{false});
    EXPECT_TRUE(controller.installingUpdate());
}

TEST_F(UpdateControllerTest, OnlyARelaunchLetsTheApplicationPrepare) {
    controller.startUpdates();
    controller.checkUpdates();
    controller.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated, std::nullopt);
    EXPECT_TRUE(preparations.empty());
}

TEST_F(UpdateControllerTest, TheEndOfACycleEndsTheInstallation) {
    controller.updaterShouldPostponeRelaunchForUpdate();
    controller.updaterDidFinishUpdateCycle(UpdateCheck::userInitiated, std::nullopt);
    EXPECT_FALSE(controller.installingUpdate());
}

}  // namespace
}  // namespace vantle
