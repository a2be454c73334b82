#include "keys/keyboard_permission.h"

#include <gtest/gtest.h>

namespace vantle {
namespace {

using Action = KeyboardPermissionFlow::Action;

KeyboardPermissionFlow flowWith(bool shown, bool visible, bool requested) {
    KeyboardPermissionFlow flow;
    flow.invitationShown = shown;
    flow.dialogVisible = visible;
    flow.settingsRequested = requested;
    return flow;
}

TEST(KeyboardPermissionFlowTest, VisibleDialogAnswersNoneAndChangesNothing) {
    for (bool explicitly : {false, true}) {
        for (bool running : {false, true}) {
            KeyboardPermissionFlow flow = flowWith(true, true, false);
            EXPECT_EQ(flow.request(explicitly, running), Action::none);
            EXPECT_EQ(flow, flowWith(true, true, false));
        }
    }
}

TEST(KeyboardPermissionFlowTest, AutomaticRequestAfterAnInvitationDoesNothing) {
    KeyboardPermissionFlow flow = flowWith(true, false, false);
    EXPECT_EQ(flow.request(false, false), Action::none);
    EXPECT_EQ(flow, flowWith(true, false, false));
}

TEST(KeyboardPermissionFlowTest, FirstAutomaticRequestInvitesAndMarksTheDialogVisible) {
    KeyboardPermissionFlow flow;
    EXPECT_EQ(flow.request(false, false), Action::invite);
    EXPECT_EQ(flow, flowWith(true, true, false));
}

TEST(KeyboardPermissionFlowTest, ExplicitRequestInvitesAgainWhenSettingsAreNeitherOpenNorRequested) {
    KeyboardPermissionFlow flow = flowWith(true, false, false);
    EXPECT_EQ(flow.request(true, false), Action::invite);
    EXPECT_EQ(flow, flowWith(true, true, false));
}

TEST(KeyboardPermissionFlowTest, ExplicitRequestWithSettingsRunningOpensThemWithoutAlert) {
    KeyboardPermissionFlow flow;
    EXPECT_EQ(flow.request(true, true), Action::openSettings);
    EXPECT_EQ(flow, flowWith(true, false, false));
}

TEST(KeyboardPermissionFlowTest, ExplicitRequestAfterSettingsWereRequestedOpensThemAgain) {
    KeyboardPermissionFlow flow = flowWith(false, false, true);
    EXPECT_EQ(flow.request(true, false), Action::openSettings);
    EXPECT_EQ(flow, flowWith(true, false, true));
}

TEST(KeyboardPermissionFlowTest, AutomaticRequestWithSettingsRunningOrRequestedOnlyMarksShown) {
    KeyboardPermissionFlow running;
    EXPECT_EQ(running.request(false, true), Action::none);
    EXPECT_EQ(running, flowWith(true, false, false));
    KeyboardPermissionFlow requested = flowWith(false, false, true);
    EXPECT_EQ(requested.request(false, false), Action::none);
    EXPECT_EQ(requested, flowWith(true, false, true));
}

TEST(KeyboardPermissionFlowTest, FinishInvitationHidesTheDialogOnly) {
    KeyboardPermissionFlow flow = flowWith(true, true, true);
    flow.finishInvitation();
    EXPECT_EQ(flow, flowWith(true, false, true));
}

TEST(KeyboardPermissionFlowTest, RepairIsRefusedWhileAnAlertIsVisible) {
    KeyboardPermissionFlow flow = flowWith(false, true, false);
    EXPECT_FALSE(flow.beginRepair());
    EXPECT_EQ(flow, flowWith(false, true, false));
}

TEST(KeyboardPermissionFlowTest, RepairMarksTheDialogShownAndVisible) {
    KeyboardPermissionFlow flow;
    EXPECT_TRUE(flow.beginRepair());
    EXPECT_EQ(flow, flowWith(true, true, false));
}

TEST(KeyboardUpdateStateTest, FreshInstallationNeedsNoRepair) {
    KeyboardUpdateState state;
    state.registerLaunch("42", false);
    EXPECT_EQ(state.seenBuild, "42");
    EXPECT_FALSE(state.pendingBuild);
}

TEST(KeyboardUpdateStateTest, LegacyInstallationWithoutSeenBuildNeedsRepair) {
    KeyboardUpdateState state;
    state.registerLaunch("42", true);
    EXPECT_EQ(state.pendingBuild, "42");
    EXPECT_EQ(state.seenBuild, "42");
}

TEST(KeyboardUpdateStateTest, UpdateToANewBuildNeedsRepair) {
    KeyboardUpdateState state{"41", std::nullopt};
    state.registerLaunch("42", false);
    EXPECT_EQ(state.pendingBuild, "42");
    EXPECT_EQ(state.seenBuild, "42");
}

TEST(KeyboardUpdateStateTest, SameBuildWithRepairDueStaysDue) {
    KeyboardUpdateState state{"42", "42"};
    state.registerLaunch("42", true);
    EXPECT_EQ(state.pendingBuild, "42");
}

TEST(KeyboardUpdateStateTest, SameBuildWithoutRepairNeedsNone) {
    KeyboardUpdateState state{"42", std::nullopt};
    state.registerLaunch("42", true);
    EXPECT_FALSE(state.pendingBuild);
}

TEST(KeyboardUpdateStateTest, RepairSucceededClearsOnlyThePendingBuild) {
    KeyboardUpdateState state{"42", "42"};
    state.repairSucceeded();
    EXPECT_EQ(state, (KeyboardUpdateState{"42", std::nullopt}));
}

}  // namespace
}  // namespace vantle
