#include <chrono>
#include <cmath>
#include <memory>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "hal_reading.h"
#include "sound_server_fixture.h"

namespace vantle::testing {
namespace {

using vantle::PulseAudioHal;

// One step of the server's volume scale is 1/65536; the tolerance allows for the rounding of a
// level to that scale with a wide margin.
constexpr float kTolerance = 0.005f;

class PulseVolumeTest : public SoundServerTest {
protected:
    std::uint32_t idOf(const std::string& uid) {
        return presentDeviceWithUid(hal, uid);
    }

    // Writes a different level to each channel and reads each back.
    void expectChannelsRoundTrip(const std::string& uid, std::uint32_t channels) {
        const std::uint32_t device = idOf(uid);
        for (std::uint32_t element = 1; element <= channels; ++element) {
            ASSERT_TRUE(setVolume(hal, device, element, 0.1f * static_cast<float>(element))) << uid << element;
        }
        for (std::uint32_t element = 1; element <= channels; ++element) {
            EXPECT_NEAR(volume(hal, device, element).value_or(-1.0f), 0.1f * static_cast<float>(element),
                        kTolerance)
                << uid << element;
        }
        EXPECT_NEAR(volume(hal, device, 0).value_or(-1.0f), 0.1f * static_cast<float>(channels), kTolerance);
    }

    PulseAudioHal hal;
};

TEST_F(PulseVolumeTest, StereoChannelsRoundTrip) { expectChannelsRoundTrip("studio", 2); }

TEST_F(PulseVolumeTest, MonoChannelRoundTrips) { expectChannelsRoundTrip("mono", 1); }

TEST_F(PulseVolumeTest, SixChannelsRoundTrip) { expectChannelsRoundTrip("surround", 6); }

TEST_F(PulseVolumeTest, LevelsMatchWhatPactlSees) {
    const std::uint32_t studio = idOf("studio");
    ASSERT_TRUE(setVolume(hal, studio, 0, 0.3f));
    // lround(0.3 × 65536) = 19661 on every channel.
    EXPECT_NE(pactl({"get-sink-volume", "studio"}).find("19661"), std::string::npos);
}

TEST_F(PulseVolumeTest, MainElementWriteKeepsTheBalance) {
    const std::uint32_t studio = idOf("studio");
    ASSERT_TRUE(setVolume(hal, studio, 1, 0.8f));
    ASSERT_TRUE(setVolume(hal, studio, 2, 0.4f));
    ASSERT_TRUE(setVolume(hal, studio, 0, 0.5f));
    EXPECT_NEAR(volume(hal, studio, 0).value_or(-1.0f), 0.5f, kTolerance);
    EXPECT_NEAR(volume(hal, studio, 1).value_or(-1.0f), 0.5f, kTolerance);
    EXPECT_NEAR(volume(hal, studio, 2).value_or(-1.0f), 0.25f, kTolerance);
}

TEST_F(PulseVolumeTest, MainElementWriteOnSilenceSetsEveryChannel) {
    const std::uint32_t surround = idOf("surround");
    ASSERT_TRUE(setVolume(hal, surround, 0, 0.0f));
    ASSERT_TRUE(setVolume(hal, surround, 0, 0.6f));
    for (std::uint32_t element = 1; element <= 6; ++element) {
        EXPECT_NEAR(volume(hal, surround, element).value_or(-1.0f), 0.6f, kTolerance) << element;
    }
}

TEST_F(PulseVolumeTest, SinkAboveFullVolumeIsReportedAsItIs) {
    pactl({"set-sink-volume", "studio", "150%"});
    EXPECT_NEAR(volume(hal, idOf("studio"), 0).value_or(-1.0f), 1.5f, kTolerance);
}

TEST_F(PulseVolumeTest, ReadAfterOwnWriteInsideAScopeReturnsTheWrittenValue) {
    const std::uint32_t studio = idOf("studio");
    AudioSnapshotScope scope(hal);
    EXPECT_NEAR(volume(hal, studio, 1).value_or(-1.0f), 1.0f, kTolerance);
    ASSERT_TRUE(setVolume(hal, studio, 1, 0.3f));
    EXPECT_NEAR(volume(hal, studio, 1).value_or(-1.0f), 0.3f, kTolerance);
    EXPECT_NEAR(volume(hal, studio, 2).value_or(-1.0f), 1.0f, kTolerance);
}

TEST_F(PulseVolumeTest, ChangeByAnotherClientIsSeenByTheNextScope) {
    const std::uint32_t studio = idOf("studio");
    {
        AudioSnapshotScope scope(hal);
        EXPECT_NEAR(volume(hal, studio, 0).value_or(-1.0f), 1.0f, kTolerance);
        pactl({"set-sink-volume", "studio", "40%"});
        // Inside the scope the reading taken at its start still answers.
        EXPECT_NEAR(volume(hal, studio, 0).value_or(-1.0f), 1.0f, kTolerance);
    }
    const auto seenByANewScope = [&] {
        AudioSnapshotScope scope(hal);
        return std::abs(volume(hal, studio, 0).value_or(-1.0f) - 0.4f) < kTolerance;
    };
    // PipeWire brings each client's view up to date on its own, a moment after pactl's.
    EXPECT_TRUE(onPipeWire() ? untilSeen(seenByANewScope) : seenByANewScope());
}

TEST_F(PulseVolumeTest, ReadsOutsideAScopeSeeOtherClientsAtOnce) {
    const std::uint32_t studio = idOf("studio");
    pactl({"set-sink-volume", "studio", "40%"});
    const auto seen = [&] { return std::abs(volume(hal, studio, 0).value_or(-1.0f) - 0.4f) < kTolerance; };
    EXPECT_TRUE(onPipeWire() ? untilSeen(seen) : seen());
}

TEST_F(PulseVolumeTest, ScopeCostsOneRoundTripHoweverManyReads) {
    const std::vector<std::uint32_t> devices = deviceIds(hal);
    ASSERT_FALSE(devices.empty());
    auto probeEverything = [&] {
        for (const std::uint32_t device : devices) {
            text(hal, device, audio::kName);
            text(hal, device, audio::kUid);
            streamBytes(hal, device);
            idList(hal, device, audio::kActiveSubDevices);
            for (std::uint32_t element = 0; element <= 32; ++element) {
                hal.hasProperty(device, {audio::kVolume, audio::kScopeOutput, element});
                volume(hal, device, element);
            }
        }
    };

    AudioSnapshotScope scope(hal);
    const std::uint64_t afterBegin = hal.roundTrips();
    probeEverything();
    const std::uint64_t afterOnePass = hal.roundTrips();
    probeEverything();
    probeEverything();
    EXPECT_EQ(afterOnePass, afterBegin);
    EXPECT_EQ(hal.roundTrips(), afterBegin);
    {
        // An inner scope reuses the outer one's reading.
        AudioSnapshotScope inner(hal);
        probeEverything();
    }
    EXPECT_EQ(hal.roundTrips(), afterBegin);
}

TEST_F(PulseVolumeTest, WriteInsideAScopeCostsOneRoundTrip) {
    const std::uint32_t studio = idOf("studio");
    AudioSnapshotScope scope(hal);
    const std::uint64_t before = hal.roundTrips();
    ASSERT_TRUE(setVolume(hal, studio, 0, 0.7f));
    EXPECT_EQ(hal.roundTrips(), before + 1);
}

TEST_F(PulseVolumeTest, ABatchOfWritesToSeveralSinksAndChannelsCostsOneRoundTrip) {
    const std::uint32_t studio = idOf("studio");
    const std::uint32_t desk = idOf("desk");
    const std::uint32_t surround = idOf("surround");
    const float quiet = 0.2f;
    const float loud = 0.8f;
    const float left = 0.3f;
    const float right = 0.6f;
    AudioSnapshotScope scope(hal);
    const std::uint64_t before = hal.roundTrips();
    const std::vector<AudioHal::Status> statuses = hal.setDataBatch({
        {studio, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &quiet},
        {desk, {audio::kVolume, audio::kScopeOutput, 1}, sizeof(float), &left},
        {desk, {audio::kVolume, audio::kScopeOutput, 2}, sizeof(float), &right},
        {surround, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &loud},
    });
    EXPECT_EQ(hal.roundTrips(), before + 1);
    EXPECT_EQ(statuses, std::vector<AudioHal::Status>(4, AudioHal::kSuccess));
    // Both channel writes to one sink took, not only the last.
    EXPECT_NE(pactl({"get-sink-volume", "desk"}).find("19661"), std::string::npos);
    EXPECT_NE(pactl({"get-sink-volume", "desk"}).find("39322"), std::string::npos);
    EXPECT_NE(pactl({"get-sink-volume", "studio"}).find("13107"), std::string::npos);
    EXPECT_NE(pactl({"get-sink-volume", "surround"}).find("52429"), std::string::npos);
}

TEST_F(PulseVolumeTest, ABatchReportsTheSinkThatVanishedAndStillWritesTheOthers) {
    const std::string module = pactl({"load-module", "module-null-sink", "sink_name=fleeting"});
    PulseAudioHal reader;
    const std::uint32_t fleeting = idOf("fleeting");
    const std::uint32_t studio = idOf("studio");
    const float level = 0.35f;
    AudioSnapshotScope scope(hal);
    pactl({"unload-module", module});
    if (onPipeWire()) {
        // PipeWire brings each client's view up to date on its own; until this client's has
        // lost the sink, a write to it would still be taken. The scope's reading cannot tell,
        // so another client's view is watched and this one given a generous moment more.
        ASSERT_TRUE(untilSeen([] { return !deviceWithUid(*std::make_unique<PulseAudioHal>(), "fleeting"); }));
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    const std::vector<AudioHal::Status> statuses = hal.setDataBatch({
        {fleeting, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &level},
        {studio, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &level},
    });
    ASSERT_EQ(statuses.size(), 2u);
    EXPECT_NE(statuses[0], AudioHal::kSuccess);
    EXPECT_EQ(statuses[1], AudioHal::kSuccess);
    EXPECT_NEAR(volume(reader, studio, 0).value_or(-1.0f), level, kTolerance);
}

TEST_F(PulseVolumeTest, SourcesAndNamesAreNotSettable) {
    bool settable = true;
    EXPECT_EQ(hal.isSettable(idOf("studio"), {audio::kName, audio::kScopeGlobal, 0}, settable), AudioHal::kSuccess);
    EXPECT_FALSE(settable);
    const float level = 0.5f;
    EXPECT_NE(hal.setData(idOf("microphone"), {audio::kVolume, audio::kScopeOutput, 0}, sizeof(level), &level),
              AudioHal::kSuccess);
}

}  // namespace
}  // namespace vantle::testing
