#include "audio/pulse/pulse_properties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace vantle::pulse {
namespace {

using audio::kScopeGlobal;
using audio::kScopeOutput;

PulseSnapshot threeSinksAndASource() {
    PulseSnapshot snapshot;
    snapshot.defaultSinkName = "desk";
    snapshot.sinks.push_back(PulseSink{0, "desk", "Desk", "module-null-sink.c", 1, {65536, 32768}, ""});
    snapshot.sinks.push_back(PulseSink{1, "hall", "Hall", "module-null-sink.c", 2, {0}, ""});
    snapshot.sinks.push_back(PulseSink{2, "both", "Both", "module-combine-sink.c", 3, {65536, 65536}, ""});
    snapshot.sources.push_back(PulseSource{4, "mic", "Microphone"});
    snapshot.sinkInputs.push_back(PulseSinkInput{3, 1, ""});
    snapshot.sinkInputs.push_back(PulseSinkInput{3, 0, ""});
    snapshot.sinkInputs.push_back(PulseSinkInput{3, 0, ""});
    snapshot.sinkInputs.push_back(PulseSinkInput{std::nullopt, 1, ""});
    return snapshot;
}

// What PipeWire's pulse server shows: every driver is "PipeWire". Sink 2 is a combined sink made
// through module-combine-sink (module 7), sink 3 one made by PipeWire's own configuration (no
// module, a combining link group), sink 4 a sink with remapped channels that feeds sink 0
// through a loopback's link group.
PulseSnapshot pipeWireSinks() {
    PulseSnapshot snapshot;
    snapshot.defaultSinkName = "desk";
    const std::vector<std::uint32_t> full{65536, 65536};
    snapshot.sinks.push_back(PulseSink{0, "desk", "Desk", "PipeWire", 5, full, ""});
    snapshot.sinks.push_back(PulseSink{1, "hall", "Hall", "PipeWire", 6, full, ""});
    snapshot.sinks.push_back(PulseSink{2, "both", "Both", "PipeWire", 7, full, "combine-sink-40-12"});
    snapshot.sinks.push_back(PulseSink{3, "native", "Native", "PipeWire", std::nullopt, full, "combine-sink-52-6"});
    snapshot.sinks.push_back(PulseSink{4, "remap", "Remapped", "PipeWire", 8, full, "loopback-40-13"});
    snapshot.combiningModules = {7};
    snapshot.sinkInputs.push_back(PulseSinkInput{7, 1, "combine-sink-40-12"});
    snapshot.sinkInputs.push_back(PulseSinkInput{7, 0, "combine-sink-40-12"});
    snapshot.sinkInputs.push_back(PulseSinkInput{std::nullopt, 0, "combine-sink-52-6"});
    snapshot.sinkInputs.push_back(PulseSinkInput{std::nullopt, 1, "combine-sink-52-6"});
    snapshot.sinkInputs.push_back(PulseSinkInput{8, 0, "loopback-40-13"});
    return snapshot;
}

struct Answer {
    AudioHal::Status status = AudioHal::kSuccess;
    PropertyValue value;

    std::vector<std::uint32_t> ids() const {
        std::vector<std::uint32_t> result(value.bytes.size() / sizeof(std::uint32_t));
        std::memcpy(result.data(), value.bytes.data(), result.size() * sizeof(std::uint32_t));
        return result;
    }

    float level() const {
        float result = -1.0f;
        std::memcpy(&result, value.bytes.data(), std::min(value.bytes.size(), sizeof(result)));
        return result;
    }
};

Answer ask(const PulseSnapshot& snapshot, std::uint32_t object, std::uint32_t selector,
           std::uint32_t scope = kScopeGlobal, std::uint32_t element = audio::kMainElement) {
    Answer answer;
    answer.status = readProperty(snapshot, object, {selector, scope, element}, answer.value);
    return answer;
}

TEST(PulsePropertiesTest, DevicesListSinksThenSourcesWithDistinctIds) {
    const Answer answer = ask(threeSinksAndASource(), audio::kSystemObject, audio::kDevices);
    ASSERT_EQ(answer.status, AudioHal::kSuccess);
    EXPECT_EQ(answer.ids(), (std::vector<std::uint32_t>{16, 17, 18, kSourceIdBase + 4}));
}

TEST(PulsePropertiesTest, DefaultOutputIsTheDefaultSinksId) {
    const Answer answer = ask(threeSinksAndASource(), audio::kSystemObject, audio::kDefaultOutputDevice);
    ASSERT_EQ(answer.status, AudioHal::kSuccess);
    EXPECT_EQ(answer.ids(), std::vector<std::uint32_t>{16});
}

TEST(PulsePropertiesTest, MissingDefaultSinkFailsTheRead) {
    PulseSnapshot snapshot = threeSinksAndASource();
    snapshot.defaultSinkName.clear();
    EXPECT_NE(ask(snapshot, audio::kSystemObject, audio::kDefaultOutputDevice).status, AudioHal::kSuccess);
}

TEST(PulsePropertiesTest, MainVolumeIsTheLoudestChannel) {
    const PulseSnapshot snapshot = threeSinksAndASource();
    EXPECT_FLOAT_EQ(ask(snapshot, 16, audio::kVolume, kScopeOutput, 0).level(), 1.0f);
    const Answer second = ask(snapshot, 16, audio::kVolume, kScopeOutput, 2);
    EXPECT_FLOAT_EQ(second.level(), 0.5f);
    EXPECT_TRUE(second.value.settable);
}

TEST(PulsePropertiesTest, ElementsBeyondTheChannelsDoNotExist) {
    const PulseSnapshot snapshot = threeSinksAndASource();
    EXPECT_EQ(ask(snapshot, 16, audio::kVolume, kScopeOutput, 3).status, kStatusUnknownProperty);
    EXPECT_EQ(ask(snapshot, 17, audio::kVolume, kScopeOutput, 2).status, kStatusUnknownProperty);
}

TEST(PulsePropertiesTest, SourcesHaveNoOutputStreamAndNoVolume) {
    const PulseSnapshot snapshot = threeSinksAndASource();
    const std::uint32_t source = kSourceIdBase + 4;
    const Answer streams = ask(snapshot, source, audio::kStreams, kScopeOutput);
    ASSERT_EQ(streams.status, AudioHal::kSuccess);
    EXPECT_TRUE(streams.value.bytes.empty());
    EXPECT_EQ(ask(snapshot, source, audio::kVolume, kScopeOutput).status, kStatusUnknownProperty);
    EXPECT_EQ(ask(snapshot, 16, audio::kStreams, kScopeOutput).value.bytes.size(), 4u);
}

TEST(PulsePropertiesTest, CombinedSinkListsTheSinksItsModuleFeedsOnce) {
    const PulseSnapshot snapshot = threeSinksAndASource();
    const Answer members = ask(snapshot, 18, audio::kActiveSubDevices);
    ASSERT_EQ(members.status, AudioHal::kSuccess);
    EXPECT_EQ(members.ids(), (std::vector<std::uint32_t>{16, 17}));
    EXPECT_EQ(ask(snapshot, 16, audio::kActiveSubDevices).status, kStatusUnknownProperty);
}

TEST(PulsePropertiesTest, UnknownObjectsAreReported) {
    EXPECT_EQ(ask(threeSinksAndASource(), 99, audio::kName).status, kStatusBadObject);
}

TEST(PulsePropertiesTest, OnPipeWireACombinedSinkIsKnownByItsModulesNameNotItsDriver) {
    PulseSnapshot snapshot = pipeWireSinks();
    EXPECT_EQ(ask(snapshot, 18, audio::kActiveSubDevices).ids(), (std::vector<std::uint32_t>{16, 17}));
    // Found by the link group alone when the module list is not known.
    snapshot.combiningModules.clear();
    EXPECT_EQ(ask(snapshot, 18, audio::kActiveSubDevices).ids(), (std::vector<std::uint32_t>{16, 17}));
}

TEST(PulsePropertiesTest, OnPipeWireACombinedSinkWithoutAModuleHasTheSinksItsLinkGroupFeeds) {
    const Answer answer = ask(pipeWireSinks(), 19, audio::kActiveSubDevices);
    ASSERT_EQ(answer.status, AudioHal::kSuccess);
    EXPECT_EQ(answer.ids(), (std::vector<std::uint32_t>{16, 17}));
}

TEST(PulsePropertiesTest, OnPipeWireASinkThatFeedsAnotherThroughALoopbackIsADeviceOfItsOwn) {
    EXPECT_EQ(ask(pipeWireSinks(), 20, audio::kActiveSubDevices).status, kStatusUnknownProperty);
    EXPECT_EQ(ask(pipeWireSinks(), 16, audio::kActiveSubDevices).status, kStatusUnknownProperty);
}

TEST(PulsePropertiesTest, AModuleNamedAfterCombiningMakesItsSinksCombinedWhateverTheDriver) {
    PulseSnapshot snapshot = pipeWireSinks();
    snapshot.sinks[2].linkGroup.clear();
    EXPECT_EQ(ask(snapshot, 18, audio::kActiveSubDevices).ids(), (std::vector<std::uint32_t>{16, 17}));
    snapshot.combiningModules.clear();
    EXPECT_EQ(ask(snapshot, 18, audio::kActiveSubDevices).status, kStatusUnknownProperty);
}

TEST(PulsePropertiesTest, MainVolumeWriteKeepsTheBalance) {
    const PulseSink sink{0, "desk", "Desk", "", std::nullopt, {65536, 32768}, ""};
    EXPECT_EQ(volumesAfterWrite(sink, 0, 0.5f), (std::vector<std::uint32_t>{32768, 16384}));
}

TEST(PulsePropertiesTest, MainVolumeWriteOnSilenceSetsEveryChannel) {
    const PulseSink sink{0, "desk", "Desk", "", std::nullopt, {0, 0, 0}, ""};
    EXPECT_EQ(volumesAfterWrite(sink, 0, 0.25f), (std::vector<std::uint32_t>{16384, 16384, 16384}));
}

TEST(PulsePropertiesTest, MainVolumeWriteOnSilenceGivesBackTheRememberedBalance) {
    const PulseSink sink{0, "desk", "Desk", "", std::nullopt, {0, 0}, ""};
    EXPECT_EQ(volumesAfterWrite(sink, 0, 0.5f, {65536, 32768}), (std::vector<std::uint32_t>{32768, 16384}));
    // A remembered balance of another channel count is not this sink's.
    EXPECT_EQ(volumesAfterWrite(sink, 0, 0.5f, {65536, 32768, 0}), (std::vector<std::uint32_t>{32768, 32768}));
}

TEST(PulsePropertiesTest, ChannelWriteChangesOnlyThatChannelAndClamps) {
    const PulseSink sink{0, "desk", "Desk", "", std::nullopt, {65536, 32768}, ""};
    EXPECT_EQ(volumesAfterWrite(sink, 2, 1.5f), (std::vector<std::uint32_t>{65536, 65536}));
    EXPECT_EQ(volumesAfterWrite(sink, 1, -1.0f), (std::vector<std::uint32_t>{0, 32768}));
    EXPECT_FALSE(volumesAfterWrite(sink, 3, 0.5f));
}

TEST(PulsePropertiesTest, LevelsConvertOnTheServersScale) {
    EXPECT_EQ(volumeFromLevel(0.3f), 19661u);
    EXPECT_FLOAT_EQ(levelFromVolume(98304), 1.5f);
}

}  // namespace
}  // namespace vantle::pulse
