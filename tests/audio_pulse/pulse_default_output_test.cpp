// A scope that starts from the default output reads the default sink alone, and the rest of the
// server only when something else is asked.
#include <chrono>
#include <cmath>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "hal_reading.h"
#include "sound_server_fixture.h"

namespace vantle::testing {
namespace {

using vantle::PulseAudioHal;

constexpr float kTolerance = 0.005f;

class PulseDefaultOutputTest : public SoundServerTest {
protected:
    std::uint32_t idOf(const std::string& uid) {
        return presentDeviceWithUid(hal, uid);
    }
    // Everything a volume key asks about the default output before it writes.
    struct DefaultOutputAnswers {
        std::optional<std::uint32_t> device;
        std::optional<std::string> name;
        std::optional<std::string> uid;
        std::optional<std::uint32_t> streams;
        std::vector<std::uint32_t> members;
        std::vector<std::optional<float>> volumes;
        bool operator==(const DefaultOutputAnswers&) const = default;
    };
    DefaultOutputAnswers askAboutTheDefaultOutput() {
        DefaultOutputAnswers answers;
        answers.device = defaultOutput(hal);
        const std::uint32_t device = answers.device.value_or(0);
        answers.name = text(hal, device, audio::kName);
        answers.uid = text(hal, device, audio::kUid);
        answers.streams = streamBytes(hal, device);
        answers.members = idList(hal, device, audio::kActiveSubDevices);
        for (std::uint32_t element = 0; element <= 32; ++element) {
            answers.volumes.push_back(volume(hal, device, element));
        }
        return answers;
    }
    void useAsDefault(const std::string& sink) {
        pactl({"set-default-sink", sink});
        ASSERT_TRUE(untilSeen([&] { return defaultOutput(hal) == sinkIdOf(sink); }));
    }

    PulseAudioHal hal;
};

TEST_F(PulseDefaultOutputTest, APlainDefaultOutputIsAnsweredByOneShortReading) {
    const DefaultOutputAnswers whole = [&] {
        AudioSnapshotScope scope(hal);
        return askAboutTheDefaultOutput();
    }();
    ASSERT_EQ(whole.uid, "studio");
    const std::uint64_t before = hal.roundTrips();
    AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
    EXPECT_EQ(askAboutTheDefaultOutput(), whole);
    EXPECT_EQ(hal.roundTrips(), before + 1);
}

TEST_F(PulseDefaultOutputTest, AWriteToTheDefaultOutputGoesAloneAndReadsBackAsWritten) {
    const std::uint32_t studio = idOf("studio");
    const std::uint32_t desk = idOf("desk");
    pactl({"set-sink-volume", "desk", "26214"});  // 0.4
    ASSERT_TRUE(untilSeen([&] { return std::abs(volume(hal, desk, 1).value_or(-1.0f) - 0.4f) < kTolerance; }));
    const std::uint64_t before = hal.roundTrips();
    AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
    ASSERT_EQ(defaultOutput(hal), studio);
    const float level = 0.3f;
    ASSERT_TRUE(setVolume(hal, studio, 0, level));
    EXPECT_EQ(hal.roundTrips(), before + 2);
    const std::optional<float> written = std::round(level * 65536.0f) / 65536.0f;
    EXPECT_EQ(volume(hal, studio, 0), written);
    EXPECT_EQ(hal.roundTrips(), before + 2);
    EXPECT_NE(pactl({"get-sink-volume", "studio"}).find("19661"), std::string::npos);
    // Another device asked after the write completes the reading; our write still reads back
    // exactly as written.
    EXPECT_NEAR(volume(hal, desk, 1).value_or(-1.0f), 0.4f, kTolerance);
    EXPECT_EQ(hal.roundTrips(), before + 3);
    EXPECT_EQ(volume(hal, studio, 0), written);
}

TEST_F(PulseDefaultOutputTest, AskingAboutAnotherDeviceFirstReadsTheWhole) {
    const std::uint32_t desk = idOf("desk");
    const std::uint32_t studio = idOf("studio");
    const std::uint64_t before = hal.roundTrips();
    AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
    EXPECT_EQ(defaultOutput(hal), studio);
    EXPECT_EQ(text(hal, desk, audio::kUid), "desk");
    EXPECT_EQ(hal.roundTrips(), before + 2);
    EXPECT_FALSE(deviceIds(hal).empty());
    EXPECT_EQ(text(hal, idOf("microphone"), audio::kUid), "microphone");
    EXPECT_EQ(hal.roundTrips(), before + 2);
    // With the whole already read, a write is a write alone.
    ASSERT_TRUE(setVolume(hal, desk, 1, 0.25f));
    EXPECT_EQ(hal.roundTrips(), before + 3);
}

TEST_F(PulseDefaultOutputTest, AWriteToAnotherDeviceReadsTheWholeFirst) {
    const std::uint32_t desk = idOf("desk");
    const std::uint64_t before = hal.roundTrips();
    AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
    ASSERT_TRUE(setVolume(hal, desk, 2, 0.6f));
    EXPECT_EQ(hal.roundTrips(), before + 3);
    EXPECT_NEAR(volume(hal, desk, 2).value_or(-1.0f), 0.6f, kTolerance);
    EXPECT_NEAR(volume(hal, desk, 1).value_or(-1.0f), 1.0f, kTolerance);
}

TEST_F(PulseDefaultOutputTest, ACombinedDefaultOutputIsReadWholeOnceKnownToBeCombined) {
    useAsDefault("nested");
    const std::uint32_t nested = idOf("nested");
    const std::vector<std::uint32_t> members = [&] {
        AudioSnapshotScope scope(hal);
        return idList(hal, nested, audio::kActiveSubDevices);
    }();
    ASSERT_EQ(members.size(), 2u);
    // The last reading found the default combined: the members come with the first reading.
    const std::uint64_t before = hal.roundTrips();
    {
        AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
        EXPECT_EQ(idList(hal, nested, audio::kActiveSubDevices), members);
        const float level = 0.45f;
        ASSERT_TRUE(setVolume(hal, members.front(), 0, level));
        EXPECT_EQ(hal.roundTrips(), before + 2);
    }
    // A default that became combined since the last reading is found out by the short reading;
    // its members then take the whole, once.
    useAsDefault("studio");
    pactl({"set-default-sink", "nested"});
    for (int attempt = 0; attempt < 500; ++attempt) {
        const std::uint64_t beforeScope = hal.roundTrips();
        AudioSnapshotScope scope(hal, AudioSnapshotScope::Start::defaultOutput);
        if (defaultOutput(hal) != nested) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            continue;
        }
        EXPECT_EQ(idList(hal, nested, audio::kActiveSubDevices), members);
        EXPECT_EQ(hal.roundTrips(), beforeScope + 2);
        return;
    }
    FAIL() << "the new default output never reached this client";
}

TEST_F(PulseDefaultOutputTest, ASequenceStopsAtTheFirstStepThatCannotBeWritten) {
    const std::uint32_t studio = idOf("studio");
    const std::uint32_t desk = idOf("desk");
    const std::uint32_t mono = idOf("mono");
    const float level = 0.3f;
    AudioSnapshotScope scope(hal);
    const std::uint64_t before = hal.roundTrips();
    // Desk is stereo: it has no channel 9, which the reading already tells.
    const std::vector<std::vector<AudioHal::Status>> results = hal.setDataInSequence({
        {{studio, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &level}},
        {{desk, {audio::kVolume, audio::kScopeOutput, 1}, sizeof(float), &level},
         {desk, {audio::kVolume, audio::kScopeOutput, 9}, sizeof(float), &level}},
        {{mono, {audio::kVolume, audio::kScopeOutput, 0}, sizeof(float), &level}},
    });
    EXPECT_EQ(hal.roundTrips(), before + 1);
    ASSERT_EQ(results.size(), 2u);
    EXPECT_EQ(results[0], std::vector<AudioHal::Status>{AudioHal::kSuccess});
    ASSERT_EQ(results[1].size(), 2u);
    EXPECT_EQ(results[1][0], AudioHal::kSuccess);
    EXPECT_NE(results[1][1], AudioHal::kSuccess);
    PulseAudioHal reader;
    EXPECT_NEAR(volume(reader, studio, 0).value_or(-1.0f), level, kTolerance);
    EXPECT_NEAR(volume(reader, desk, 1).value_or(-1.0f), level, kTolerance);
    EXPECT_NEAR(volume(reader, mono, 0).value_or(-1.0f), 1.0f, kTolerance);
}

}  // namespace
}  // namespace vantle::testing
