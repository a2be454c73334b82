#include <algorithm>
#include <chrono>
#include <thread>

#include "audio/pulse/audio_hal_pulse.h"
#include "hal_reading.h"
#include "sound_server_fixture.h"

namespace vantle::testing {
namespace {

using vantle::PulseAudioHal;

class PulseDevicesTest : public SoundServerTest {
protected:
    std::uint32_t idOf(const std::string& uid) {
        return presentDeviceWithUid(hal, uid);
    }

    PulseAudioHal hal;
};

TEST_F(PulseDevicesTest, ListsEverySinkWithItsDescriptionAndName) {
    const std::vector<std::pair<std::string, std::string>> expected{
        {"studio", "Studio Display Speakers"}, {"desk", "Desk Speakers"},
        {"mono", "Mono Speaker"},              {"surround", "Surround Speakers"},
        {"cafe", "Caf\xC3\xA9 \"B\xC3\xBCro\" Speakers"},
        {"left_room", "Left Room"},            {"right_room", "Right Room"},
        {"combo", "Both Rooms"},               {"nested", "Everywhere"}};
    for (const auto& [uid, name] : expected) {
        const std::uint32_t id = idOf(uid);
        EXPECT_EQ(text(hal, id, audio::kName), name) << uid;
        EXPECT_EQ(streamBytes(hal, id), 4u) << uid;
        EXPECT_GE(id, 2u);
    }
}

TEST_F(PulseDevicesTest, ListsSinksBeforeSourcesWithoutDuplicates) {
    const std::vector<std::uint32_t> ids = deviceIds(hal);
    ASSERT_EQ(ids.size(), 10u);
    std::vector<std::uint32_t> sorted = ids;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
    EXPECT_EQ(text(hal, ids.front(), audio::kUid), "studio");
    EXPECT_EQ(text(hal, ids.back(), audio::kUid), "microphone");
}

TEST_F(PulseDevicesTest, RealSourcesHaveNoOutputStreamAndMonitorsAreLeftOut) {
    const std::uint32_t microphone = idOf("microphone");
    EXPECT_EQ(text(hal, microphone, audio::kName), "Null Microphone");
    EXPECT_EQ(streamBytes(hal, microphone), 0u);
    EXPECT_FALSE(hal.hasProperty(microphone, {audio::kVolume, audio::kScopeOutput, 0}));
    EXPECT_FALSE(deviceWithUid(hal, "studio.monitor"));
}

// The source list is read again only after the server reports a change of sources; the report
// may trail the command that caused it by a moment, so the lists are looked at a few times.
TEST_F(PulseDevicesTest, SourcesThatComeAndGoAreSeenByLaterReadings) {
    const auto listedWithin = [&](const std::string& uid, bool listed) {
        for (int attempt = 0; attempt < 50; ++attempt) {
            if (deviceWithUid(hal, uid).has_value() == listed) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    };
    ASSERT_TRUE(listedWithin("microphone", true));
    const std::string module = loadNullSource("headset");
    EXPECT_TRUE(listedWithin("headset", true));
    pactl({"unload-module", module});
    EXPECT_TRUE(listedWithin("headset", false));
    EXPECT_TRUE(listedWithin("microphone", true));
}

TEST_F(PulseDevicesTest, VolumeElementsExistForEachChannelOnly) {
    const std::uint32_t surround = idOf("surround");
    for (std::uint32_t element = 0; element <= 6; ++element) {
        EXPECT_TRUE(hal.hasProperty(surround, {audio::kVolume, audio::kScopeOutput, element})) << element;
        bool settable = false;
        EXPECT_EQ(hal.isSettable(surround, {audio::kVolume, audio::kScopeOutput, element}, settable),
                  AudioHal::kSuccess);
        EXPECT_TRUE(settable);
    }
    EXPECT_FALSE(hal.hasProperty(surround, {audio::kVolume, audio::kScopeOutput, 7}));
    EXPECT_FALSE(hal.hasProperty(idOf("mono"), {audio::kVolume, audio::kScopeOutput, 2}));
    std::uint32_t size = 0;
    EXPECT_EQ(hal.dataSize(surround, {audio::kVolume, audio::kScopeOutput, 3}, size), AudioHal::kSuccess);
    EXPECT_EQ(size, sizeof(float));
}

TEST_F(PulseDevicesTest, DefaultOutputFollowsTheServersDefaultSink) {
    EXPECT_EQ(defaultOutput(hal), idOf("studio"));
    pactl({"set-default-sink", "cafe"});
    EXPECT_EQ(defaultOutput(hal), idOf("cafe"));
    pactl({"set-default-sink", "combo"});
    EXPECT_EQ(defaultOutput(hal), idOf("combo"));
}

TEST_F(PulseDevicesTest, CombinedSinkListsItsMemberSinks) {
    std::vector<std::uint32_t> expected{idOf("left_room"), idOf("right_room")};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(idList(hal, idOf("combo"), audio::kActiveSubDevices), expected);
}

TEST_F(PulseDevicesTest, NestedCombinedSinkListsTheInnerCombinedSinkAndTheOtherMember) {
    std::vector<std::uint32_t> expected{idOf("combo"), idOf("desk")};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(idList(hal, idOf("nested"), audio::kActiveSubDevices), expected);
}

TEST_F(PulseDevicesTest, PlainSinkHasNoMembers) {
    EXPECT_TRUE(idList(hal, idOf("studio"), audio::kActiveSubDevices).empty());
}

// A sink with remapped channels plays into its master through a stream of its own, as a combined
// sink does (on PipeWire even with a link group), yet it is a device with a volume of its own.
TEST_F(PulseDevicesTest, RemappedSinkIsADeviceOfItsOwnNotACombinedOne) {
    pactl({"load-module", "module-remap-sink", "sink_name=remapped", "master=studio"});
    ASSERT_TRUE(deviceWithUid(hal, "remapped"));
    EXPECT_TRUE(idList(hal, idOf("remapped"), audio::kActiveSubDevices).empty());
    std::uint32_t size = 99;
    EXPECT_NE(hal.dataSize(idOf("remapped"), {audio::kActiveSubDevices, audio::kScopeGlobal, 0}, size),
              AudioHal::kSuccess);
}

// The first reading has seen the modules loaded so far; a combined sink made after it is
// combined all the same, once the server has made its streams.
TEST_F(PulseDevicesTest, CombinedSinkMadeWhileRunningListsItsMembers) {
    ASSERT_FALSE(deviceIds(hal).empty());
    pactl({"load-module", "module-combine-sink", "sink_name=late", "slaves=studio,mono"});
    std::vector<std::uint32_t> expected{idOf("studio"), idOf("mono")};
    std::sort(expected.begin(), expected.end());
    std::vector<std::uint32_t> members;
    for (int attempt = 0; attempt < 100 && members != expected; ++attempt) {
        members = idList(hal, idOf("late"), audio::kActiveSubDevices);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_EQ(members, expected);
}

TEST_F(PulseDevicesTest, SinkKeepsItsIdWhileOtherSinksComeAndGo) {
    const std::vector<std::uint32_t> before = deviceIds(hal);
    const std::uint32_t studio = idOf("studio");
    const std::string module = pactl({"load-module", "module-null-sink", "sink_name=extra"});
    const std::uint32_t extra = idOf("extra");
    EXPECT_EQ(std::count(before.begin(), before.end(), extra), 0);
    pactl({"unload-module", module});
    EXPECT_EQ(idOf("studio"), studio);
    EXPECT_FALSE(deviceWithUid(hal, "extra"));
    EXPECT_EQ(text(hal, extra, audio::kUid), std::nullopt);
}

TEST_F(PulseDevicesTest, UnknownObjectsFailWithAnEmptySize) {
    std::uint32_t size = 99;
    EXPECT_NE(hal.dataSize(12345, {audio::kName, audio::kScopeGlobal, 0}, size), AudioHal::kSuccess);
    EXPECT_EQ(size, 0u);
}

}  // namespace
}  // namespace vantle::testing
