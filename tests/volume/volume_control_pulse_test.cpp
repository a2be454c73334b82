// Volume and mute against a real, private PulseAudio server.
#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "hal_reading.h"
#include "localization/localization.h"
#include "services/muted_levels.h"
#include "services/plist_file_store_linux.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "sound_server_fixture.h"
#include "support/child_process.h"
#include "support/temporary_directory.h"

namespace vantle::testing {
namespace {

constexpr float kTolerance = 0.005f;

class VolumeControlPulseTest : public SoundServerTest {
protected:
    std::uint32_t idOf(const std::string& uid) {
        return presentDeviceWithUid(hal, uid);
    }
    float channel(const std::string& uid, std::uint32_t element) {
        return volume(hal, idOf(uid), element).value_or(-1.0f);
    }
    void setChannels(const std::string& uid, float left, float right) {
        ASSERT_TRUE(setVolume(hal, idOf(uid), 1, left));
        ASSERT_TRUE(setVolume(hal, idOf(uid), 2, right));
    }
    const std::string& lastMessage() const { return messages.reports.back(); }

    PulseAudioHal hal;
    MemoryDefaultsStore store;
    UserDefaults defaults{store};
    RecordingMessageLine messages;
    VolumeControl control{hal, defaults, messages, [] {}};
};

TEST_F(VolumeControlPulseTest, CombinedDefaultOutputSetsEveryMemberLeaf) {
    pactl({"set-default-sink", "nested"});
    std::vector<std::string> leaves;
    for (const Output& output : control.devices()) {
        leaves.push_back(output.uid);
    }
    EXPECT_EQ(leaves, (std::vector<std::string>{"desk", "left_room", "right_room"}));
    control.applyVolume(0.4f);
    EXPECT_EQ(lastMessage(), L("s092", 3));
    for (const char* leaf : {"desk", "left_room", "right_room"}) {
        EXPECT_NEAR(channel(leaf, 1), 0.4f, kTolerance) << leaf;
        EXPECT_NEAR(channel(leaf, 2), 0.4f, kTolerance) << leaf;
    }
    // The studio speakers are not part of the default output.
    EXPECT_NEAR(channel("studio", 0), 1.0f, kTolerance);
}

// A command acts on at most six devices: a combined output of six is driven whole, one of seven
// not at all, on either server.
TEST_F(VolumeControlPulseTest, ACombinedOutputOfSixDevicesIsDrivenAndOneOfSevenIsLeftAlone) {
    std::string seven;
    for (int device = 1; device <= 7; ++device) {
        const std::string name = "room" + std::to_string(device);
        pactl({"load-module", "module-null-sink", "sink_name=" + name});
        seven += (device > 1 ? "," : "") + name;
    }
    const std::string six = seven.substr(0, seven.rfind(','));
    const auto streams = [this] {
        const std::string listed = pactl({"list", "short", "sink-inputs"});
        return listed.empty() ? 0 : 1 + std::count(listed.begin(), listed.end(), '\n');
    };
    const auto combine = [&](const std::string& name, const std::string& members, long count) {
        const long before = streams();
        pactl({"load-module", "module-combine-sink", "sink_name=" + name, "slaves=" + members});
        // PipeWire makes the streams into the members a moment after the sink.
        for (int attempt = 0; attempt < 200 && streams() < before + count; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        ASSERT_EQ(streams(), before + count);
        pactl({"set-default-sink", name});
        ASSERT_TRUE(untilSeen([&] { return defaultOutput(hal) == sinkIdOf(name); }));
    };

    combine("six_rooms", six, 6);
    EXPECT_EQ(control.devices().size(), 6u);
    control.applyVolume(0.4f);
    EXPECT_EQ(lastMessage(), L("s092", 6));
    EXPECT_NEAR(channel("room6", 0), 0.4f, kTolerance);

    combine("seven_rooms", seven, 7);
    EXPECT_TRUE(control.devices().empty());
    control.applyVolume(0.8f);
    EXPECT_EQ(lastMessage(), L("s090"));
    for (int device = 1; device <= 7; ++device) {
        const std::string name = "room" + std::to_string(device);
        EXPECT_NEAR(channel(name, 0), device <= 6 ? 0.4f : 1.0f, kTolerance) << name;
    }
}

TEST_F(VolumeControlPulseTest, MuteAndUnmuteRestoreEachLeafsOwnLevels) {
    pactl({"set-default-sink", "nested"});
    setChannels("desk", 0.2f, 0.3f);
    setChannels("left_room", 0.5f, 0.5f);
    setChannels("right_room", 0.9f, 0.6f);
    control.toggleMute();
    EXPECT_EQ(lastMessage(), L("s095"));
    EXPECT_TRUE(control.muted());
    for (const char* leaf : {"desk", "left_room", "right_room"}) {
        EXPECT_NEAR(channel(leaf, 0), 0.0f, kTolerance) << leaf;
    }
    EXPECT_EQ(control.saved().size(), 3u);

    control.toggleMute();
    EXPECT_EQ(lastMessage(), L("s096"));
    EXPECT_FALSE(control.muted());
    EXPECT_NEAR(channel("desk", 1), 0.2f, kTolerance);
    EXPECT_NEAR(channel("desk", 2), 0.3f, kTolerance);
    EXPECT_NEAR(channel("right_room", 1), 0.9f, kTolerance);
    EXPECT_NEAR(channel("right_room", 2), 0.6f, kTolerance);
}

TEST_F(VolumeControlPulseTest, ChangeByAnotherProgramIsTheStartOfTheNextCommand) {
    control.applyVolume(0.5f);
    pactl({"set-sink-volume", "studio", "13107"});  // 0.2
    ASSERT_TRUE(untilSeen([&] { return std::abs(channel("studio", 0) - 0.2f) < kTolerance; }));
    control.toggleMute();
    EXPECT_NEAR(control.saved().at("studio").at(0), 0.2f, kTolerance);
}

TEST_F(VolumeControlPulseTest, SoundServerRestartInTheMiddleOfARunThenACommandWorks) {
    control.applyVolume(0.6f);
    EXPECT_EQ(lastMessage(), L("s092", 1));
    killServer();
    control.applyVolume(0.7f);
    EXPECT_EQ(lastMessage(), L("s090"));
    startServer();
    control.applyVolume(0.3f);
    EXPECT_EQ(lastMessage(), L("s092", 1));
    EXPECT_NEAR(channel("studio", 0), 0.3f, kTolerance);
}

// The settings file of a real process, so that the memory outlives the process.
class VolumeProcessTest : public VolumeControlPulseTest {
protected:
    ChildOptions options() const {
        ChildOptions childOptions;
        childOptions.environment = {{"XDG_CONFIG_HOME", configHome.path().string()},
                                    {"PULSE_SERVER", serverString()},
                                    {"LANGUAGE", "en"}};
        return childOptions;
    }
    SavedLevels savedOnDisk() {
        PlistFileStore file(configHome.path() / "vantle-control" / "defaults.plist");
        UserDefaults onDisk(file);
        return loadSavedLevels(onDisk);
    }

    TemporaryDirectory configHome;
};

TEST_F(VolumeProcessTest, MuteMemorySurvivesACrashAndTheNextStartRestores) {
    pactl({"set-default-sink", "combo"});
    // Balanced channels: the balance of a silenced sink lives only in the process that silenced
    // it, so after a crash the level comes back on equal channels.
    setChannels("left_room", 0.45f, 0.45f);
    setChannels("right_room", 0.8f, 0.8f);
    {
        RunningChild muting(VOLUME_COMMAND, {"mute", "hold"}, options());
        for (int attempt = 0; attempt < 200 && savedOnDisk().size() < 2; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        // Wait until the writes are done too, then end the process as a crash would.
        for (int attempt = 0; attempt < 200 && channel("right_room", 0) > kTolerance; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        muting.killAndWait(SIGKILL);
    }
    EXPECT_NEAR(channel("left_room", 0), 0.0f, kTolerance);
    ASSERT_EQ(savedOnDisk().size(), 2u);

    const ChildResult unmuting = runChild(VOLUME_COMMAND, {"unmute"}, options());
    EXPECT_EQ(unmuting.exitStatus, 0) << unmuting.standardError;
    EXPECT_EQ(unmuting.standardOutput, "Sound restored.\n");
    EXPECT_NEAR(channel("left_room", 1), 0.45f, kTolerance);
    EXPECT_NEAR(channel("left_room", 2), 0.45f, kTolerance);
    EXPECT_NEAR(channel("right_room", 1), 0.8f, kTolerance);
    EXPECT_TRUE(savedOnDisk().empty());
}

TEST_F(VolumeProcessTest, HandEditedGarbageInTheMuteMemoryMeansNothingIsMuted) {
    writeFile(configHome.path() / "vantle-control" / "defaults.plist",
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>mutedLevels</key>"
              "<dict><key>studio</key><array><string>loud</string></array></dict></dict></plist>");
    const ChildResult toggling = runChild(VOLUME_COMMAND, {"toggle"}, options());
    // Not muted, so the toggle mutes.
    EXPECT_EQ(toggling.standardOutput, "Sound muted.\n");
    EXPECT_NEAR(channel("studio", 0), 0.0f, kTolerance);
}

}  // namespace
}  // namespace vantle::testing
