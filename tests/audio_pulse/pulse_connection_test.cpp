#include <chrono>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "hal_reading.h"
#include "sound_server_fixture.h"

namespace vantle::testing {
namespace {

using vantle::PulseAudioHal;
using Clock = std::chrono::steady_clock;

class PulseConnectionTest : public SoundServerTest {};

// Calls deviceIds until it returns a non-empty list or the time is up.
bool devicesReappear(AudioHal& hal, std::chrono::milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    while (Clock::now() < deadline) {
        if (!deviceIds(hal).empty()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

TEST_F(PulseConnectionTest, SocketNobodyListensOnGivesAnEmptyListQuickly) {
    PulseAudioHal hal("unix:" + (folder() / "nobody").string());
    const Clock::time_point start = Clock::now();
    EXPECT_TRUE(deviceIds(hal).empty());
    std::uint32_t size = 99;
    EXPECT_NE(hal.dataSize(audio::kSystemObject, {audio::kDevices, audio::kScopeGlobal, 0}, size),
              AudioHal::kSuccess);
    EXPECT_EQ(size, 0u);
    EXPECT_FALSE(hal.hasProperty(audio::kSystemObject, {audio::kDevices, audio::kScopeGlobal, 0}));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(1));
}

TEST_F(PulseConnectionTest, ServerRestartIsFollowedWithoutANewBackend) {
    PulseAudioHal hal;
    ASSERT_FALSE(deviceIds(hal).empty());
    const std::optional<std::uint32_t> studio = deviceWithUid(hal, "studio");

    killServer();
    for (int call = 0; call < 5; ++call) {
        const Clock::time_point start = Clock::now();
        EXPECT_TRUE(deviceIds(hal).empty());
        EXPECT_FALSE(volume(hal, studio.value_or(0), 0));
        EXPECT_FALSE(setVolume(hal, studio.value_or(0), 0, 0.5f));
        EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
    }

    startServer();
    ASSERT_TRUE(devicesReappear(hal, std::chrono::seconds(5)));
    const std::optional<std::uint32_t> restarted = deviceWithUid(hal, "studio");
    EXPECT_EQ(restarted, sinkIdOf("studio"));
    if (!onPipeWire()) {
        // PulseAudio numbers sinks in the order they are loaded, and the restarted server loaded
        // the same devices in the same order, so the ids are the same. PipeWire numbers them
        // among all the objects its processes make at the same time, in no fixed order.
        EXPECT_EQ(restarted, studio);
    }
    EXPECT_TRUE(setVolume(hal, restarted.value_or(0), 0, 0.5f));
    EXPECT_NEAR(volume(hal, restarted.value_or(0), 0).value_or(-1.0f), 0.5f, 0.005f);
}

TEST_F(PulseConnectionTest, StuckServerMakesCallsFailWithinTheTimeLimit) {
    PulseAudioHal hal(std::nullopt, std::chrono::milliseconds(500));
    const std::optional<std::uint32_t> studio = deviceWithUid(hal, "studio");
    ASSERT_TRUE(studio);

    pauseServer();
    for (int call = 0; call < 3; ++call) {
        const Clock::time_point start = Clock::now();
        EXPECT_FALSE(volume(hal, *studio, 0));
        EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500));
    }
    {
        // A scope whose reading failed fails its reads at once rather than wait again each time.
        const Clock::time_point start = Clock::now();
        AudioSnapshotScope scope(hal);
        for (std::uint32_t element = 0; element <= 32; ++element) {
            EXPECT_FALSE(volume(hal, *studio, element));
        }
        EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500));
    }
    resumeServer();
    EXPECT_TRUE(devicesReappear(hal, std::chrono::seconds(5)));
}

}  // namespace
}  // namespace vantle::testing
