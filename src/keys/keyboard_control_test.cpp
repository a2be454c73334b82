#include "keys/keyboard_control.h"

#include <gtest/gtest.h>

#include "keys/testing/keyboard_world.h"
#include "localization/localization.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

class KeyboardControlTest : public ::testing::Test, public testing::KeyboardWorld {
protected:
    float volume() const { return hal.volume(10, 0); }
    std::string reported() const { return host.reports.empty() ? "" : host.reports.back(); }
};

TEST_F(KeyboardControlTest, StartTakesTheKeysAndSaysSo) {
    keys.startKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_EQ(reported(), L("s130"));
    EXPECT_GE(host.refreshes, 1);
}

TEST_F(KeyboardControlTest, StartIsIdempotentWhileTheKeysAreTaken) {
    keys.startKeys();
    keys.startKeys();
    keys.startKeys();
    EXPECT_EQ(tap.starts, 1);
    EXPECT_EQ(host.reports.size(), 1u);
}

TEST_F(KeyboardControlTest, ATapTheSystemSwitchedOffIsSwitchedOnByTheNextTickWithoutSayingSoAgain) {
    keys.startKeys();
    host.reports.clear();
    tap.switchedOff = true;
    EXPECT_FALSE(keys.keyboardEnabled());
    keys.startKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_EQ(tap.starts, 2);
    EXPECT_TRUE(host.reports.empty()) << host.reports.front();
}

TEST_F(KeyboardControlTest, ATapThatStaysSwitchedOffIsGivenUpAndTheKeysAreBlocked) {
    keys.startKeys();
    tap.switchedOff = true;
    tap.staysOff = true;
    keys.startKeys();
    EXPECT_FALSE(tap.installed());
    EXPECT_TRUE(keys.keyboardAttemptFailed);
    EXPECT_EQ(reported(), L("s111"));
    // Blocked: the next ticks leave it alone until the trust answer changes or the user asks.
    keys.startKeys();
    EXPECT_EQ(tap.starts, 2);
}

TEST_F(KeyboardControlTest, KeyPressIsQueuedNotHandledInsideTheCallback) {
    keys.startKeys();
    tap.press({kSoundUp, true, false, false});
    EXPECT_FLOAT_EQ(volume(), 0.5f);
    ASSERT_EQ(host.queued.size(), 1u);
    host.runQueued();
    EXPECT_FLOAT_EQ(volume(), 0.5625f);
    EXPECT_EQ(keys.lastMediaKey(), L("s131"));
}

TEST_F(KeyboardControlTest, KeyReleaseIsSwallowedAndChangesNothing) {
    keys.startKeys();
    tap.press({kSoundUp, false, false, false});
    EXPECT_TRUE(host.queued.empty());
    EXPECT_FLOAT_EQ(volume(), 0.5f);
}

TEST_F(KeyboardControlTest, LastMediaKeyReadsTheWaitingTextBeforeAnyKey) {
    EXPECT_EQ(keys.lastMediaKey(), L("s013"));
}

TEST_F(KeyboardControlTest, KeysHeldByAnotherProgramBlockFurtherAttempts) {
    tap.heldElsewhere = true;
    keys.startKeys();
    EXPECT_FALSE(keys.keyboardEnabled());
    EXPECT_TRUE(keys.keyboardAttemptFailed);
    EXPECT_EQ(reported(), L("s111"));
    tap.heldElsewhere = false;
    keys.startKeys();  // the watchdog's next tick does not try again
    EXPECT_EQ(tap.starts, 1);
    EXPECT_FALSE(keys.keyboardEnabled());
}

TEST_F(KeyboardControlTest, EnableKeysLeavesTheBlockedStateAndSaysTheKeysAreOn) {
    tap.heldElsewhere = true;
    keys.startKeys();
    tap.heldElsewhere = false;
    keys.enableKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_EQ(reported(), L("s087"));
    EXPECT_TRUE(host.alerts.empty());  // nothing left to invite the user to
}

TEST_F(KeyboardControlTest, TrustWithdrawnRemovesTheTapAndTrustGrantedInstallsIt) {
    keys.startKeys();
    trust.trust = false;
    keys.startKeys();
    EXPECT_FALSE(keys.keyboardEnabled());
    host.reports.clear();
    trust.trust = true;
    keys.startKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_EQ(reported(), L("s130"));
}

TEST_F(KeyboardControlTest, ChangedTrustClearsTheBlockedState) {
    tap.heldElsewhere = true;
    keys.startKeys();
    trust.trust = false;
    keys.startKeys();
    EXPECT_FALSE(keys.keyboardAttemptFailed);
    tap.heldElsewhere = false;
    trust.trust = true;
    keys.startKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
}

TEST_F(KeyboardControlTest, RepairOrRelaunchInProgressLeavesEverythingAlone) {
    keys.startKeys();
    keys.repairInProgress = true;
    trust.trust = false;
    keys.startKeys();
    keys.enableKeys();
    keys.requestKeyboardPermission(true);
    EXPECT_TRUE(keys.keyboardEnabled());
    keys.repairInProgress = false;
    keys.relaunchPending = true;
    keys.startKeys();
    EXPECT_TRUE(keys.keyboardEnabled());
    EXPECT_TRUE(host.alerts.empty());
}

TEST_F(KeyboardControlTest, PendingRepairKeepsTheKeysOff) {
    keys.startKeys();
    keys.keyboardUpdate.pendingBuild = "42";
    keys.startKeys();
    EXPECT_FALSE(keys.keyboardEnabled());
    EXPECT_TRUE(keys.updateRepairNeeded());
}

TEST_F(KeyboardControlTest, FreshInstallNeedsNoRepairAndInvitesOnceAtLaunch) {
    keys.registerKeyboardBuild();
    EXPECT_FALSE(keys.updateRepairNeeded());
    EXPECT_EQ(defaults.string(settings::kKeyboardSeenBuild), "42");
    EXPECT_FALSE(defaults.object(settings::kKeyboardPendingRepairBuild));
    trust.trust = false;
    keys.startKeys();
    keys.requestKeyboardPermission(false);
    keys.requestKeyboardPermission(false);
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_EQ(host.alerts[0].message, L("s147"));
    EXPECT_EQ(host.alerts[0].informative, L("s148"));
    EXPECT_EQ(host.alerts[0].firstButton, L("s149"));
    EXPECT_EQ(host.alerts[0].secondButton, L("s150"));
    EXPECT_FALSE(keys.keyboardFlow.dialogVisible);
}

TEST_F(KeyboardControlTest, InvitationWhenTrustedExplainsAnotherProgramHoldsTheKeys) {
    tap.heldElsewhere = true;
    keys.startKeys();
    keys.requestKeyboardPermission(false);
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_EQ(host.alerts[0].informative, L("s111"));
    // The first button opens the settings where the keys can be freed.
    EXPECT_EQ(host.settingsOpened, 1);
    EXPECT_TRUE(keys.keyboardFlow.settingsRequested);
    EXPECT_EQ(reported(), L("s110"));
}

TEST_F(KeyboardControlTest, NotNowClosesTheInvitationWithoutOpeningSettings) {
    tap.heldElsewhere = true;
    keys.startKeys();
    host.chooseSecondButton = true;
    keys.requestKeyboardPermission(false);
    EXPECT_EQ(host.settingsOpened, 0);
}

TEST_F(KeyboardControlTest, NoInvitationWhileTheKeysAreOn) {
    keys.startKeys();
    keys.requestKeyboardPermission(false);
    keys.requestKeyboardPermission(true);
    EXPECT_TRUE(host.alerts.empty());
}

TEST_F(KeyboardControlTest, ExplicitRequestWhileSettingsRunOpensThemWithoutAlert) {
    tap.heldElsewhere = true;
    keys.startKeys();
    trust.settingsRunning = true;
    keys.requestKeyboardPermission(true);
    EXPECT_TRUE(host.alerts.empty());
    EXPECT_EQ(host.settingsOpened, 1);
}

TEST_F(KeyboardControlTest, ExplicitRequestWhileAnAlertIsVisibleDoesNothing) {
    tap.heldElsewhere = true;
    keys.startKeys();
    keys.keyboardFlow.dialogVisible = true;
    keys.requestKeyboardPermission(true);
    EXPECT_TRUE(host.alerts.empty());
    EXPECT_EQ(host.settingsOpened, 0);
}

TEST_F(KeyboardControlTest, SettingsThatCannotOpenSayWhatToDoAndAllowAnotherInvitation) {
    host.settingsOpen = false;
    keys.openKeyboardSettings();
    EXPECT_FALSE(keys.keyboardFlow.settingsRequested);
    EXPECT_EQ(reported(), L("s151"));
}

class KeyboardRepairTest : public KeyboardControlTest {
protected:
    KeyboardRepairTest() { defaults.set(settings::kKeyboardSeenBuild, "41"); }
};

TEST_F(KeyboardRepairTest, UpdateToANewBuildMakesARepairDueAndStoresIt) {
    keys.registerKeyboardBuild();
    EXPECT_TRUE(keys.updateRepairNeeded());
    EXPECT_EQ(defaults.string(settings::kKeyboardPendingRepairBuild), "42");
    EXPECT_EQ(defaults.string(settings::kKeyboardSeenBuild), "42");
}

TEST_F(KeyboardRepairTest, LaunchRequestShowsTheRepairAlertAndCancelKeepsItDue) {
    keys.registerKeyboardBuild();
    keys.startKeys();
    keys.requestKeyboardPermission(false);
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_EQ(host.alerts[0].message, L("s152"));
    EXPECT_EQ(host.alerts[0].informative, L("s153"));
    EXPECT_EQ(host.alerts[0].firstButton, L("s124"));
    EXPECT_EQ(host.alerts[0].secondButton, L("s009"));
    EXPECT_TRUE(keys.updateRepairNeeded());
    EXPECT_FALSE(keys.keyboardEnabled());
    EXPECT_EQ(trust.resets, 0);
    // The automatic request does not ask a second time in the same run.
    keys.requestKeyboardPermission(false);
    EXPECT_EQ(host.alerts.size(), 1u);
}

TEST_F(KeyboardRepairTest, SameBuildRelaunchedWithARepairDueStaysDue) {
    defaults.set(settings::kKeyboardSeenBuild, "42");
    defaults.set(settings::kKeyboardPendingRepairBuild, "42");
    keys.registerKeyboardBuild();
    EXPECT_TRUE(keys.updateRepairNeeded());
}

TEST_F(KeyboardRepairTest, LegacyInstallationWithAStoredKeyboardStatusNeedsRepair) {
    defaults.remove(settings::kKeyboardSeenBuild);
    defaults.set(settings::kKeyboardStatus, "anything");
    keys.registerKeyboardBuild();
    EXPECT_TRUE(keys.updateRepairNeeded());
}

TEST_F(KeyboardRepairTest, ResetThatSucceedsForgetsTheRepairAndRelaunches) {
    keys.registerKeyboardBuild();
    host.chooseSecondButton = true;
    keys.repairKeyboardPermission();
    EXPECT_EQ(trust.resets, 1);
    EXPECT_FALSE(defaults.object(settings::kKeyboardPendingRepairBuild));
    EXPECT_FALSE(keys.updateRepairNeeded());
    EXPECT_EQ(host.relaunches, 1);
    EXPECT_EQ(host.settingsOpened, 1);
    EXPECT_TRUE(keys.repairInProgress);
}

TEST_F(KeyboardRepairTest, ResetThatFailsKeepsTheRepairDueAndTheKeysBlocked) {
    keys.registerKeyboardBuild();
    host.chooseSecondButton = true;
    trust.resetWorks = false;
    keys.repairKeyboardPermission();
    EXPECT_TRUE(keys.updateRepairNeeded());
    EXPECT_EQ(defaults.string(settings::kKeyboardPendingRepairBuild), "42");
    EXPECT_TRUE(keys.keyboardAttemptFailed);
    EXPECT_FALSE(keys.repairInProgress);
    EXPECT_EQ(host.settingsOpened, 1);
    EXPECT_EQ(reported(), L("s010"));
    EXPECT_EQ(host.relaunches, 0);
}

TEST_F(KeyboardRepairTest, AskedForWithoutUpdateUsesTheResetTexts) {
    keys.repairKeyboardPermission();
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_EQ(host.alerts[0].message, L("s007"));
    EXPECT_EQ(host.alerts[0].informative, L("s008"));
}

TEST_F(KeyboardRepairTest, NoRepairIsShownOnTopOfAnotherAlert) {
    keys.keyboardFlow.dialogVisible = true;
    keys.repairKeyboardPermission();
    EXPECT_TRUE(host.alerts.empty());
}

// On X11 the keys are not a permission of one build: nothing to repair, no dialog.
class DesktopKeyboardTest : public KeyboardRepairTest {
protected:
    DesktopKeyboardTest() { trust.followsBuild = false; }
};

TEST_F(DesktopKeyboardTest, UpdateMakesNoRepairDue) {
    keys.registerKeyboardBuild();
    EXPECT_FALSE(keys.updateRepairNeeded());
    EXPECT_FALSE(defaults.object(settings::kKeyboardPendingRepairBuild));
    EXPECT_EQ(defaults.string(settings::kKeyboardSeenBuild), "42");
}

TEST_F(DesktopKeyboardTest, RepairWithTheKeysOnShowsNoDialog) {
    keys.registerKeyboardBuild();
    keys.startKeys();
    keys.repairKeyboardPermission();
    EXPECT_TRUE(host.alerts.empty());
    EXPECT_EQ(trust.resets, 0);
    EXPECT_EQ(reported(), L("s087"));
}

TEST_F(DesktopKeyboardTest, RepairWithTheKeysHeldElsewhereExplainsAndOpensShortcutSettings) {
    keys.registerKeyboardBuild();
    tap.heldElsewhere = true;
    keys.startKeys();
    keys.repairKeyboardPermission();
    ASSERT_EQ(host.alerts.size(), 1u);
    EXPECT_EQ(host.alerts[0].informative, L("s111"));
    EXPECT_EQ(trust.resets, 0);
    EXPECT_EQ(host.settingsOpened, 1);
}

}  // namespace
}  // namespace vantle
