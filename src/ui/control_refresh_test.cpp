#include "ui/control_refresh.h"

#include <gtest/gtest.h>

#include <string>

#include "localization/localization.h"

namespace vantle {
namespace {

using Screen = RefreshFacts::Screen;
using Leaf = RefreshFacts::Leaf;

const std::string kDot = " \xC2\xB7 ";
const std::string kWarning = "\xE2\x9A\xA0";

// One stereo output at half volume and one display with native control at 40 %, with every
// control built, the keys taken and the program allowed to take them.
RefreshFacts ordinaryFacts() {
    RefreshFacts facts;
    facts.updates = {true, true};
    facts.login = {LoginItemStatus::enabled, true, std::nullopt};
    facts.audio.leaves = {Leaf{2, {0.5f, 0.5f}}};
    facts.displays.screens = {Screen{7, "Studio", 0.4f, 0.4f}};
    auto& controls = facts.controls;
    controls.updateButton = controls.loginSettingsButton = controls.muteButton = true;
    controls.quickVolume = controls.quickVolumeLabel = controls.quickMute = controls.keyboardButton = true;
    controls.quickDisplays = controls.quickDisplayLabels = {7};
    controls.displaySliders = controls.displayLabels = {7};
    facts.keyboard = {true, true, false};
    return facts;
}

std::vector<Screen> screensNamed(int count) {
    std::vector<Screen> screens;
    for (int index = 1; index <= count; ++index) {
        screens.push_back(Screen{static_cast<std::uint32_t>(index), "Display " + std::to_string(index), 0.5f, 0.5f});
    }
    return screens;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result(1);
    for (char each : text) {
        if (each == '\n') {
            result.emplace_back();
        } else {
            result.back() += each;
        }
    }
    return result;
}

TEST(ControlRefreshTest, TextsComeFromTheStringTables) {
    // Every expectation below compares with the tables; they must really be there.
    EXPECT_NE(L("s123"), "s123");
    EXPECT_NE(L("s082").find(kWarning), std::string::npos);
    EXPECT_EQ(L("s144").find(kWarning), std::string::npos);
}

TEST(ControlRefreshTest, UpdateButtonIsEnabledExactlyWhenTheUpdaterCanCheck) {
    RefreshFacts facts = ordinaryFacts();
    EXPECT_EQ(refreshControls(facts).updateButton->enabled, true);
    facts.updates.canCheck = false;
    EXPECT_EQ(refreshControls(facts).updateButton->enabled, false);
    facts.controls.updateButton = false;
    EXPECT_FALSE(refreshControls(facts).updateButton.has_value());
}

TEST(ControlRefreshTest, AutomaticUpdatesCheckBoxMirrorsTheUpdater) {
    RefreshFacts facts = ordinaryFacts();
    EXPECT_EQ(refreshControls(facts).automaticUpdates.checked, true);
    facts.updates.automatic = false;
    EXPECT_EQ(refreshControls(facts).automaticUpdates.checked, false);
}

TEST(ControlRefreshTest, LoginToggleIsOnWhenEnabledOrAwaitingApproval) {
    RefreshFacts facts = ordinaryFacts();
    const std::pair<LoginItemStatus, bool> cases[] = {{LoginItemStatus::notRegistered, false},
                                                      {LoginItemStatus::enabled, true},
                                                      {LoginItemStatus::requiresApproval, true},
                                                      {LoginItemStatus::notFound, false}};
    for (const auto& [status, on] : cases) {
        facts.login.status = status;
        EXPECT_EQ(refreshControls(facts).loginToggle.checked, on) << static_cast<int>(status);
    }
}

TEST(ControlRefreshTest, EnabledLoginItemShowsNoStatusAndNoSettingsButton) {
    const ControlStates states = refreshControls(ordinaryFacts());
    EXPECT_EQ(states.loginToggle.enabled, true);
    EXPECT_EQ(states.loginStatus.text, "");
    EXPECT_EQ(states.loginStatus.hidden, true);
    EXPECT_EQ(states.loginSettingsButton->hidden, true);
}

TEST(ControlRefreshTest, OutsideAnApplicationsFolderTheToggleIsDisabledAndExplained) {
    RefreshFacts facts = ordinaryFacts();
    facts.login.installedForLogin = false;
    facts.login.status = LoginItemStatus::notRegistered;
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.loginToggle.enabled, false);
    EXPECT_EQ(states.loginStatus.text, L("s077"));
    EXPECT_EQ(states.loginStatus.hidden, false);
    EXPECT_EQ(states.loginStatus.colour, TextColour::systemOrange);
    EXPECT_EQ(states.loginSettingsButton->hidden, true);
}

TEST(ControlRefreshTest, AwaitingApprovalShowsToggleOnTextAndSettingsButton) {
    RefreshFacts facts = ordinaryFacts();
    facts.login.status = LoginItemStatus::requiresApproval;
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.loginToggle.checked, true);
    EXPECT_EQ(states.loginStatus.text, L("s078"));
    EXPECT_EQ(states.loginStatus.hidden, false);
    EXPECT_EQ(states.loginSettingsButton->hidden, false);
}

TEST(ControlRefreshTest, LoginErrorComesFirstAndShowsTheSettingsButton) {
    RefreshFacts facts = ordinaryFacts();
    facts.login.installedForLogin = false;
    facts.login.lastError = L("s016", "refused");
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.loginStatus.text, L("s016", "refused"));
    EXPECT_EQ(states.loginStatus.colour, TextColour::systemOrange);
    EXPECT_EQ(states.loginSettingsButton->hidden, false);
    facts.controls.loginSettingsButton = false;
    EXPECT_FALSE(refreshControls(facts).loginSettingsButton.has_value());
}

TEST(ControlRefreshTest, StatusTextCountsDisplaysAndSaysTheOutputIsReady) {
    const ControlStates states = refreshControls(ordinaryFacts());
    EXPECT_EQ(lines(*states.audioWarning.text), (std::vector<std::string>{L("s144", 1), L("s083"), L("s080")}));
    EXPECT_EQ(states.audioWarning.colour, TextColour::secondaryLabel);
}

TEST(ControlRefreshTest, SixDisplaysAreCountedAndNoDisplayWarns) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens = screensNamed(6);
    EXPECT_EQ(lines(*refreshControls(facts).audioWarning.text).front(), L("s144", 6));
}

TEST(ControlRefreshTest, NoDisplayGivesTheDisplayCountWarning) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens.clear();
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(lines(*states.audioWarning.text).front(), L("s079"));
    EXPECT_EQ(states.audioWarning.colour, TextColour::systemOrange);
}

TEST(ControlRefreshTest, SevenScreensWarnAndDisableThePopoverDisplaySliders) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens = screensNamed(7);
    facts.controls.quickDisplays = facts.controls.quickDisplayLabels = {1, 2};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(lines(*states.audioWarning.text).front(), L("s079"));
    EXPECT_EQ(states.audioWarning.colour, TextColour::systemOrange);
    ASSERT_EQ(states.quickDisplays.size(), 2u);
    for (const auto& slider : states.quickDisplays) {
        EXPECT_EQ(slider.state.enabled, false);
        EXPECT_EQ(slider.state.value, 50.0);  // still shows where the display is
    }
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Display 1" + kDot + "50 %");
}

TEST(ControlRefreshTest, UnreadableDisplaysAreNamedInScreenOrder) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens = screensNamed(3);
    facts.displays.screens[0].read.reset();
    facts.displays.screens[2].read.reset();
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(lines(*states.audioWarning.text),
              (std::vector<std::string>{L("s144", 3), L("s145", "Display 1, Display 3"), L("s083"), L("s080")}));
    EXPECT_EQ(states.audioWarning.colour, TextColour::systemOrange);
}

TEST(ControlRefreshTest, WithoutLeafDevicesVolumeIsDisabledAtZeroAndTheAudioLineWarns) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves.clear();
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.volume, (ControlState{.value = 0.0, .enabled = false}));
    EXPECT_EQ(states.audioLabel.text, "0 %");
    EXPECT_EQ(states.quickVolume, (ControlState{.value = 0.0, .enabled = false}));
    EXPECT_EQ(states.quickVolumeLabel->text, L("s129", 0));
    EXPECT_EQ(states.muteButton->enabled, false);
    EXPECT_EQ(states.quickMute->enabled, false);
    EXPECT_EQ(lines(*states.audioWarning.text)[1], L("s082"));
    EXPECT_EQ(states.audioWarning.colour, TextColour::systemOrange);
}

TEST(ControlRefreshTest, ALeafWithoutVolumeElementsMakesTheOutputUnusable) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves.push_back(Leaf{0, {}});
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.volume.enabled, false);
    EXPECT_EQ(states.volume.value, 50.0);
    EXPECT_EQ(lines(*states.audioWarning.text)[1], L("s082"));
}

TEST(ControlRefreshTest, AMutedSystemCanAlwaysBeUnmuted) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves.clear();
    facts.audio.muted = true;
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.muteButton, (ControlState{.title = L("s084"), .enabled = true}));
    EXPECT_EQ(states.quickMute, (ControlState{.title = L("s085"), .enabled = true}));
    EXPECT_EQ(states.volume.enabled, false);
}

TEST(ControlRefreshTest, UnmutedSystemOffersMute) {
    const ControlStates states = refreshControls(ordinaryFacts());
    EXPECT_EQ(states.muteButton, (ControlState{.title = L("s123"), .enabled = true}));
    EXPECT_EQ(states.quickMute, (ControlState{.title = L("s123"), .enabled = true}));
}

TEST(ControlRefreshTest, TheLevelShownIsTheHighestNotTheAverage) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves = {Leaf{1, {0.3f}}, Leaf{1, {0.55f}}};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.audioLabel.text, "55 %");
    EXPECT_EQ(states.quickVolumeLabel->text, L("s129", 55));
    EXPECT_DOUBLE_EQ(*states.volume.value, static_cast<double>(0.55f) * 100);
    EXPECT_DOUBLE_EQ(*states.quickVolume->value, static_cast<double>(0.55f) * 100);
}

TEST(ControlRefreshTest, UnreadableElementsAreSkippedAndNoneReadableShowsZero) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves = {Leaf{2, {}}};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.audioLabel.text, "0 %");
    EXPECT_EQ(states.volume.enabled, true);  // the device has elements; only their reads failed
}

TEST(ControlRefreshTest, PercentagesRoundHalvesAwayFromZero) {
    RefreshFacts facts = ordinaryFacts();
    facts.audio.leaves = {Leaf{1, {0.125f}}};
    facts.displays.screens[0].read = 0.125f;
    ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.audioLabel.text, "13 %");
    EXPECT_EQ(states.quickVolumeLabel->text, L("s129", 13));
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Studio" + kDot + "13 %");
    EXPECT_EQ(states.displayLabels[0].state.text, "13");
    facts.audio.leaves = {Leaf{1, {0.004f}}};
    EXPECT_EQ(refreshControls(facts).audioLabel.text, "0 %");
}

TEST(ControlRefreshTest, AbsentPopoverAndSettingsControlsAreSkipped) {
    RefreshFacts facts = ordinaryFacts();
    facts.controls = RefreshFacts::Controls{};
    const ControlStates states = refreshControls(facts);
    EXPECT_FALSE(states.updateButton || states.loginSettingsButton || states.muteButton || states.quickVolume ||
                 states.quickVolumeLabel || states.quickMute || states.keyboardButton);
    EXPECT_TRUE(states.quickDisplays.empty());
    EXPECT_TRUE(states.quickDisplayLabels.empty());
    EXPECT_TRUE(states.displaySliders.empty());
    EXPECT_TRUE(states.displayLabels.empty());
    EXPECT_TRUE(states.volume.enabled.has_value());  // the long-lived controls are always set
}

TEST(ControlRefreshTest, PopoverDisplayShowsNameAndPercentage) {
    const ControlStates states = refreshControls(ordinaryFacts());
    ASSERT_EQ(states.quickDisplays.size(), 1u);
    EXPECT_EQ(states.quickDisplays[0].id, 7u);
    EXPECT_EQ(states.quickDisplays[0].state.enabled, true);
    EXPECT_DOUBLE_EQ(*states.quickDisplays[0].state.value, static_cast<double>(0.4f) * 100);
    ASSERT_EQ(states.quickDisplayLabels.size(), 1u);
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Studio \u00B7 40 %");
}

TEST(ControlRefreshTest, SoftwareDimmedDisplayLabelEndsWithSoftwareDimming) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens[0] = Screen{7, "Studio", 0.25f, std::nullopt};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Studio" + kDot + "25 %" + kDot + L("s146"));
    EXPECT_EQ(states.quickDisplays[0].state.enabled, true);
}

TEST(ControlRefreshTest, DisplayWithoutAnyControlIsDisabledAndListedAsUnreadable) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens[0] = Screen{7, "Studio", std::nullopt, std::nullopt};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.quickDisplays[0].state, (ControlState{.enabled = false}));
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Studio" + kDot + L("s127"));
    EXPECT_EQ(states.displaySliders[0].state, (ControlState{.enabled = false}));
    EXPECT_EQ(states.displayLabels[0].state.text, L("s127"));
    EXPECT_EQ(lines(*states.audioWarning.text)[1], L("s145", "Studio"));
}

TEST(ControlRefreshTest, DisplayNoLongerListedIsShownAsDisconnected) {
    RefreshFacts facts = ordinaryFacts();
    facts.controls.quickDisplays = facts.controls.quickDisplayLabels = {7, 9, 11};
    facts.displays.unlisted[9] = {1.0f, std::nullopt};
    const ControlStates states = refreshControls(facts);
    ASSERT_EQ(states.quickDisplayLabels.size(), 3u);
    EXPECT_EQ(states.quickDisplayLabels[1].state.text, L("s086") + kDot + "100 %" + kDot + L("s146"));
    EXPECT_EQ(states.quickDisplayLabels[2].state.text, L("s086") + kDot + L("s127"));
    EXPECT_EQ(states.quickDisplays[2].state.enabled, false);
}

TEST(ControlRefreshTest, DisplayControlsKeepTheirOrderAndOnlyExistingLabelsAreSet) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens = screensNamed(3);
    facts.controls.quickDisplays = {3, 1, 2};
    facts.controls.quickDisplayLabels = {2};
    const ControlStates states = refreshControls(facts);
    ASSERT_EQ(states.quickDisplays.size(), 3u);
    EXPECT_EQ(states.quickDisplays[0].id, 3u);
    EXPECT_EQ(states.quickDisplays[1].id, 1u);
    EXPECT_EQ(states.quickDisplays[2].id, 2u);
    ASSERT_EQ(states.quickDisplayLabels.size(), 1u);
    EXPECT_EQ(states.quickDisplayLabels[0].id, 2u);
    EXPECT_EQ(states.quickDisplayLabels[0].state.text, "Display 2" + kDot + "50 %");
}

TEST(ControlRefreshTest, SettingsDisplayFieldShowsThePercentageAlone) {
    RefreshFacts facts = ordinaryFacts();
    facts.displays.screens = screensNamed(7);  // the limit does not apply to these sliders
    facts.controls.displaySliders = facts.controls.displayLabels = {1};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.displaySliders[0].state, (ControlState{.value = 50.0, .enabled = true}));
    EXPECT_EQ(states.displayLabels[0].state, ControlState{.text = "50"});
}

TEST(ControlRefreshTest, PercentageFieldBeingEditedKeepsTheTypedText) {
    RefreshFacts facts = ordinaryFacts();
    facts.controls.editedPercentageField = 7;
    const ControlStates states = refreshControls(facts);
    ASSERT_EQ(states.displayLabels.size(), 1u);
    EXPECT_FALSE(states.displayLabels[0].state.text.has_value());
    EXPECT_EQ(states.displaySliders[0].state.enabled, true);
}

TEST(ControlRefreshTest, KeysOnWhenTrustedAndTheTapRuns) {
    const ControlStates states = refreshControls(ordinaryFacts());
    EXPECT_EQ(states.keyboardState, (ControlState{.text = L("s087"), .colour = TextColour::secondaryLabel}));
    EXPECT_EQ(states.keyboardButton, (ControlState{.title = L("s056"), .hidden = true}));
}

TEST(ControlRefreshTest, KeysOffWhenTrustedButTheTapIsNotRunning) {
    RefreshFacts facts = ordinaryFacts();
    facts.keyboard.tapEnabled = false;
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.keyboardState, (ControlState{.text = L("s089"), .colour = TextColour::systemOrange}));
    EXPECT_EQ(states.keyboardButton->hidden, false);
}

TEST(ControlRefreshTest, KeysOffWhenNotTrusted) {
    RefreshFacts facts = ordinaryFacts();
    facts.keyboard = {false, false, false};
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.keyboardState, (ControlState{.text = L("s088"), .colour = TextColour::systemOrange}));
    EXPECT_EQ(states.keyboardButton->hidden, false);
}

TEST(ControlRefreshTest, PendingRepairComesFirstAndHidesTheKeysButton) {
    RefreshFacts facts = ordinaryFacts();
    facts.keyboard = {false, false, true};
    ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.keyboardState.text, L("s152"));
    EXPECT_EQ(states.keyboardState.colour, TextColour::systemOrange);
    EXPECT_EQ(states.keyboardButton->hidden, true);
    facts.keyboard = {true, true, true};
    states = refreshControls(facts);
    EXPECT_EQ(states.keyboardState.text, L("s152"));
    EXPECT_EQ(states.keyboardState.colour, TextColour::secondaryLabel);
}

TEST(ControlRefreshTest, StoredKeyboardStatusAlwaysEqualsTheShownText) {
    RefreshFacts facts = ordinaryFacts();
    for (int bits = 0; bits < 8; ++bits) {
        facts.keyboard = {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
        facts.controls.keyboardButton = (bits & 1) != 0;
        const ControlStates states = refreshControls(facts);
        EXPECT_EQ(states.keyboardStatus, states.keyboardState.text) << bits;
        EXPECT_FALSE(states.keyboardStatus.empty());
    }
}

}  // namespace
}  // namespace vantle
