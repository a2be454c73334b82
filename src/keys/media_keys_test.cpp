#include "keys/media_keys.h"

#include <gtest/gtest.h>

#include "audio/testing/fake_audio_hal.h"
#include "display/testing/fake_displays.h"
#include "localization/localization.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "services/testing/recording_workspace.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

class CountingPanelFactory final : public OsdPanelFactory {
public:
    std::unique_ptr<OsdPanel> show(const ScreenFrame&, const OsdContent& content) override {
        contents.push_back(content);
        return std::make_unique<Panel>();
    }
    std::vector<OsdContent> contents;

private:
    struct Panel final : OsdPanel {
        void orderOut() override {}
    };
};

class MediaKeyHandlerTest : public ::testing::Test {
protected:
    MediaKeyHandlerTest() {
        hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.5f, 0.5f}, true));
        hal.defaultOutput = 10;
        screens.add(1, "Panel");
        native.levels[1] = 0.5f;
        defaults.registerDefaults({{"linked", true}});
    }

    float volume() const { return hal.volume(10, 0); }

    FakeAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::RecordingMessageLine messages;
    VolumeControl volumeControl{hal, defaults, messages, [] {}};
    testing::FakeScreenSystem screens;
    testing::FakeShadeFactory shades;
    testing::FakeNativeBrightness native;
    Brightness brightness{native.functions(), screens, shades, defaults, {}};
    testing::RecordingWorkspace workspace;
    BrightnessControl brightnessControl{brightness, defaults, messages, workspace, [] {}};
    CountingPanelFactory panels;
    testing::ManualScheduler scheduler;
    OSD osd{screens, brightness, panels, scheduler};
    int refreshes = 0;
    MediaKeyHandler handler{hal, volumeControl, brightnessControl, osd, [this] { ++refreshes; }};
};

TEST_F(MediaKeyHandlerTest, SoundUpMovesOneSixteenthOrOnePercentWhenFine) {
    handler.handleMediaKey(kSoundUp, false, false);
    EXPECT_NEAR(volume(), 0.5625f, 1e-6);
    handler.handleMediaKey(kSoundUp, true, false);
    EXPECT_NEAR(volume(), 0.5725f, 1e-6);
    EXPECT_EQ(handler.lastMediaKey(), L("s131"));
    EXPECT_EQ(refreshes, 2);
    EXPECT_EQ(panels.contents.back().symbol, OsdSymbol::Speaker);
}

TEST_F(MediaKeyHandlerTest, AVolumeOrMuteKeyReadsTheSoundHardwareOnceForItsWholeWork) {
    // Reads outside a scope would each be a reading of their own.
    int readsOutsideAScope = 0;
    hal.failWhen = [&](const FakeAudioHal::Call&) {
        readsOutsideAScope += hal.snapshotDepth == 0 ? 1 : 0;
        return false;
    };
    for (int key : {kSoundUp, kSoundDown, kMute, kMute}) {
        const int before = hal.readings;
        handler.handleMediaKey(key, false, false);
        EXPECT_EQ(hal.readings - before, 1) << "key " << key;
    }
    EXPECT_EQ(readsOutsideAScope, 0);
    EXPECT_NEAR(volume(), 0.5f, 1e-6);
}

TEST_F(MediaKeyHandlerTest, OnlyAnUnmuteReadsMoreThanTheDefaultOutputFirst) {
    std::vector<int> startingFromTheDefaultOutput;
    for (int key : {kSoundUp, kSoundDown, kMute, kMute}) {
        const int before = hal.defaultOutputReadings;
        handler.handleMediaKey(key, false, false);
        startingFromTheDefaultOutput.push_back(hal.defaultOutputReadings - before);
    }
    // The second mute is an unmute: it restores every remembered device, wherever it is.
    EXPECT_EQ(startingFromTheDefaultOutput, (std::vector<int>{1, 1, 1, 0}));
}

TEST_F(MediaKeyHandlerTest, SoundUpNearTheTopStopsAtFull) {
    hal.devices[10].elements[0].volume = 0.97f;
    handler.handleMediaKey(kSoundUp, false, false);
    EXPECT_EQ(volume(), 1.0f);
}

TEST_F(MediaKeyHandlerTest, SoundDownWhileMutedMovesFromTheLoudestSavedLevel) {
    volumeControl.setSaved({{"uid-10", {0.4f}}, {"uid-gone", {0.6f}}});
    handler.handleMediaKey(kSoundDown, false, false);
    EXPECT_NEAR(volume(), 0.5375f, 1e-6);
    // The new level ends the mute of the device it reached, not of the one that is gone.
    EXPECT_EQ(volumeControl.saved(), (SavedLevels{{"uid-gone", {0.6f}}}));
    EXPECT_EQ(panels.contents.back().text, L("s123"));
}

TEST_F(MediaKeyHandlerTest, HeldMuteKeyTogglesOnceAndRepeatsOnlyShowTheDisplay) {
    handler.handleMediaKey(kMute, false, false);
    EXPECT_TRUE(volumeControl.muted());
    EXPECT_EQ(volume(), 0.0f);
    handler.handleMediaKey(kMute, false, true);
    handler.handleMediaKey(kMute, false, true);
    EXPECT_TRUE(volumeControl.muted());
    EXPECT_EQ(panels.contents.size(), 3u);
    EXPECT_EQ(panels.contents.back().symbol, OsdSymbol::SpeakerMuted);
    EXPECT_EQ(handler.lastMediaKey(), L("s123"));
    handler.handleMediaKey(kMute, false, false);
    EXPECT_FALSE(volumeControl.muted());
    EXPECT_EQ(volume(), 0.5f);
}

TEST_F(MediaKeyHandlerTest, BrightnessKeysStepAndShowTheBrightnessDisplay) {
    handler.handleMediaKey(kBrightnessUp, false, false);
    EXPECT_NEAR(native.levels[1], 0.5625f, 1e-6);
    EXPECT_EQ(panels.contents.back().symbol, OsdSymbol::Brightness);
    EXPECT_EQ(handler.lastMediaKey(), L("s107"));
    handler.handleMediaKey(kBrightnessDown, true, false);
    EXPECT_NEAR(native.levels[1], 0.5525f, 1e-6);
    EXPECT_EQ(handler.lastMediaKey(), L("s108"));
    // A key number no tap delivers counts as brightness down.
    handler.handleMediaKey(5, false, false);
    EXPECT_NEAR(native.levels[1], 0.49f, 1e-6);
    EXPECT_EQ(handler.lastMediaKey(), L("s109"));
}

TEST_F(MediaKeyHandlerTest, RepeatedVolumePressesActLikeSinglePresses) {
    handler.handleMediaKey(kSoundDown, false, true);
    handler.handleMediaKey(kSoundDown, false, true);
    EXPECT_NEAR(volume(), 0.375f, 1e-6);
}

}  // namespace
}  // namespace vantle
