// A combined output that PipeWire builds from its own configuration, with no module of the pulse
// server behind it: its combining module runs in a PipeWire process of its own, as it would from
// a file in the user's pipewire.conf.d, and plays into "studio" and "desk".
#include <signal.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "audio/volume_control.h"
#include "hal_reading.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"
#include "sound_server_fixture.h"
#include "support/child_process.h"

namespace vantle::testing {
namespace {

constexpr float kTolerance = 0.005f;

// The same configuration a user would write, with just the modules a client process needs.
constexpr const char* kCombiningConfiguration = R"(
context.spa-libs = {
    audio.convert.* = audioconvert/libspa-audioconvert
    support.*       = support/libspa-support
}
context.modules = [
    { name = libpipewire-module-protocol-native }
    { name = libpipewire-module-client-node }
    { name = libpipewire-module-adapter }
    { name = libpipewire-module-combine-stream
      args = {
          combine.mode = sink
          node.name = "both_native"
          node.description = "Studio and Desk"
          combine.props = { audio.position = [ FL FR ] }
          stream.rules = [
              { matches = [ { media.class = "Audio/Sink" node.name = "studio" }
                            { media.class = "Audio/Sink" node.name = "desk" } ]
                actions = { create-stream = { } } }
          ]
      }
    }
]
)";

class PipeWireCombinedTest : public SoundServerTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(onPipeWire());
        const std::filesystem::path configuration = folder() / "combine-studio-and-desk.conf";
        std::ofstream(configuration) << kCombiningConfiguration;
        ChildOptions options;
        options.environment["XDG_RUNTIME_DIR"] = (folder() / "runtime").string();
        options.environment["PIPEWIRE_RUNTIME_DIR"] = (folder() / "runtime").string();
        options.environment["PIPEWIRE_REMOTE"] = std::nullopt;
        combining = std::make_unique<RunningChild>("/usr/bin/pipewire", std::vector<std::string>{"-c",
                                                   configuration.string()}, options);
        // The sink shows at once; its streams to the members once PipeWire has linked them.
        for (int attempt = 0; attempt < 200 && membersOf("both_native").size() < 2; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
    }
    void TearDown() override {
        if (combining) {
            combining->killAndWait(SIGTERM);
        }
    }

    std::uint32_t idOf(const std::string& uid) { return deviceWithUid(hal, uid).value_or(0); }
    std::vector<std::uint32_t> membersOf(const std::string& uid) {
        const std::optional<std::uint32_t> id = deviceWithUid(hal, uid);
        return id ? idList(hal, *id, audio::kActiveSubDevices) : std::vector<std::uint32_t>{};
    }
    float channel(const std::string& uid, std::uint32_t element) {
        return volume(hal, idOf(uid), element).value_or(-1.0f);
    }

    PulseAudioHal hal;
    std::unique_ptr<RunningChild> combining;
};

TEST_F(PipeWireCombinedTest, ACombinedOutputMadeByPipeWiresConfigurationListsTheSinksItPlaysInto) {
    ASSERT_NE(idOf("both_native"), 0u);
    std::vector<std::uint32_t> expected{idOf("studio"), idOf("desk")};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(membersOf("both_native"), expected);
    EXPECT_EQ(text(hal, idOf("both_native"), audio::kName), "Studio and Desk");
}

TEST_F(PipeWireCombinedTest, AsTheDefaultOutputItsVolumeAndMuteGoToItsMembers) {
    pactl({"set-default-sink", "both_native"});
    MemoryDefaultsStore store;
    UserDefaults defaults{store};
    RecordingMessageLine messages;
    VolumeControl control{hal, defaults, messages, [] {}};
    std::vector<std::string> leaves;
    for (const Output& output : control.devices()) {
        leaves.push_back(output.uid);
    }
    EXPECT_EQ(leaves, (std::vector<std::string>{"studio", "desk"}));

    control.applyVolume(0.3f);
    EXPECT_NEAR(channel("studio", 0), 0.3f, kTolerance);
    EXPECT_NEAR(channel("desk", 0), 0.3f, kTolerance);
    // The combined sink's own volume is not where the level lives.
    EXPECT_NEAR(channel("both_native", 0), 1.0f, kTolerance);

    control.toggleMute();
    EXPECT_NEAR(channel("studio", 0), 0.0f, kTolerance);
    EXPECT_NEAR(channel("desk", 0), 0.0f, kTolerance);
    control.toggleMute();
    EXPECT_NEAR(channel("studio", 0), 0.3f, kTolerance);
    EXPECT_NEAR(channel("desk", 0), 0.3f, kTolerance);
}

TEST_F(PipeWireCombinedTest, ItsMembersAreFoundAgainAfterTheCombiningProcessRestarts) {
    ASSERT_EQ(membersOf("both_native").size(), 2u);
    combining->killAndWait(SIGTERM);
    combining.reset();
    for (int attempt = 0; attempt < 200 && idOf("both_native") != 0; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    EXPECT_EQ(idOf("both_native"), 0u);
    SetUp();
    EXPECT_EQ(membersOf("both_native").size(), 2u);
}

}  // namespace
}  // namespace vantle::testing
