#include "ui/refresh_facts.h"

#include <gtest/gtest.h>

#include "audio/testing/fake_audio_hal.h"
#include "display/testing/fake_displays.h"
#include "services/muted_levels.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

class RefreshFactsTest : public ::testing::Test {
protected:
    // An aggregate (50) of a stereo device (11) and a device with a main element (12).
    void addAggregate() {
        hal.add(11, FakeAudioHal::plainDevice("Left", "uid-11", {0.3f, 0.2f}));
        hal.add(12, FakeAudioHal::plainDevice("Right", "uid-12", {0.55f}, true));
        FakeAudioHal::Device aggregate = FakeAudioHal::plainDevice("Both", "uid-50", {});
        aggregate.subDevices = {{11, 12}};
        hal.add(50, aggregate);
        hal.defaultOutput = 50;
    }

    Brightness makeBrightness() {
        return Brightness(native.functions(), screenSystem, shadeFactory, defaults, {});
    }

    FakeAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::RecordingMessageLine messages;
    VolumeControl volume{hal, defaults, messages, [] {}};
    testing::FakeScreenSystem screenSystem;
    testing::FakeShadeFactory shadeFactory;
    testing::FakeNativeBrightness native;
};

TEST_F(RefreshFactsTest, LeavesCarryTheirElementCountsAndReadableLevels) {
    addAggregate();
    const RefreshFacts::Audio audio = readAudioFacts(volume, hal);
    ASSERT_EQ(audio.leaves.size(), 2u);
    EXPECT_EQ(audio.leaves[0].elementCount, 2u);
    EXPECT_EQ(audio.leaves[0].levels, (std::vector<float>{0.3f, 0.2f}));
    EXPECT_EQ(audio.leaves[1].elementCount, 1u);
    EXPECT_EQ(audio.leaves[1].levels, (std::vector<float>{0.55f}));
    EXPECT_FALSE(audio.muted);
    EXPECT_EQ(hal.snapshotDepth, 0);
}

TEST_F(RefreshFactsTest, FailedVolumeReadsAreLeftOut) {
    addAggregate();
    // The element answers while the devices are listed, then stops answering, as a device being
    // unplugged does.
    int reads = 0;
    hal.failWhen = [&reads](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::GetData && call.object == 11 &&
               call.address.selector == audio::kVolume && call.address.element == 2 && ++reads > 1;
    };
    const RefreshFacts::Audio audio = readAudioFacts(volume, hal);
    EXPECT_EQ(audio.leaves[0].elementCount, 2u);
    EXPECT_EQ(audio.leaves[0].levels, (std::vector<float>{0.3f}));
}

TEST_F(RefreshFactsTest, RememberedLevelsMeanMuted) {
    addAggregate();
    storeSavedLevels(defaults, {{"uid-11", {0.3f, 0.2f}}});
    EXPECT_TRUE(readAudioFacts(volume, hal).muted);
}

TEST_F(RefreshFactsTest, NoDefaultOutputGivesNoLeaves) {
    EXPECT_TRUE(readAudioFacts(volume, hal).leaves.empty());
}

TEST_F(RefreshFactsTest, EveryGatheringReadsTheHardwareAfresh) {
    addAggregate();
    EXPECT_EQ(readAudioFacts(volume, hal).leaves[1].levels, (std::vector<float>{0.55f}));
    hal.devices[12].elements[0].volume = 0.8f;
    EXPECT_EQ(readAudioFacts(volume, hal).leaves[1].levels, (std::vector<float>{0.8f}));
}

TEST_F(RefreshFactsTest, ScreensComeInTheBackendsOrderWithBothReadings) {
    screenSystem.add(8, "Second");
    screenSystem.add(3, "First");
    native.levels[3] = 0.4f;
    defaults.set("softwareBrightness", true);
    Brightness brightness = makeBrightness();
    const RefreshFacts::Displays displays = readDisplayFacts(brightness, {});
    ASSERT_EQ(displays.screens.size(), 2u);
    EXPECT_EQ(displays.screens[0].id, 3u);
    EXPECT_EQ(displays.screens[0].name, "First");
    EXPECT_EQ(displays.screens[0].read, 0.4f);
    EXPECT_EQ(displays.screens[0].nativeRead, 0.4f);
    EXPECT_EQ(displays.screens[1].id, 8u);
    EXPECT_EQ(displays.screens[1].read, 1.0f);  // software dimming, never set
    EXPECT_FALSE(displays.screens[1].nativeRead.has_value());
    EXPECT_TRUE(displays.unlisted.empty());
}

TEST_F(RefreshFactsTest, DisplaysWithControlsButNoLongerListedAreStillRead) {
    screenSystem.add(3, "First");
    native.levels[3] = 0.4f;
    native.levels[9] = 0.7f;
    Brightness brightness = makeBrightness();
    RefreshFacts::Controls controls;
    controls.quickDisplays = {3, 9};
    controls.displaySliders = {9, 12};
    const RefreshFacts::Displays displays = readDisplayFacts(brightness, controls);
    ASSERT_EQ(displays.unlisted.size(), 2u);
    EXPECT_EQ(displays.unlisted.at(9).read, 0.7f);
    EXPECT_EQ(displays.unlisted.at(9).nativeRead, 0.7f);
    EXPECT_FALSE(displays.unlisted.at(12).read.has_value());
}

TEST_F(RefreshFactsTest, GatheredFactsDriveTheRefresh) {
    addAggregate();
    screenSystem.add(3, "First");
    native.levels[3] = 0.4f;
    Brightness brightness = makeBrightness();
    RefreshFacts facts;
    facts.controls.quickDisplays = facts.controls.quickDisplayLabels = {3};
    gatherHardwareFacts(facts, volume, hal, brightness);
    const ControlStates states = refreshControls(facts);
    EXPECT_EQ(states.audioLabel.text, "55 %");
    EXPECT_EQ(states.volume.enabled, true);
    EXPECT_EQ(states.quickDisplayLabels.at(0).state.text, std::string("First") + kDotSeparator + "40 %");
}

}  // namespace
}  // namespace vantle
