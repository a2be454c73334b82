#include "app/audio_checks.h"

#include <gtest/gtest.h>

#include "audio/testing/fake_audio_hal.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

TEST(DiagnoseAudioTest, ListsEveryOutputThenTheDefault) {
    FakeAudioHal hal;
    hal.add(40, FakeAudioHal::plainDevice("Studio Display Speakers", "studio", {0.5f, 1.0f}));
    hal.add(41, FakeAudioHal::plainDevice("Café \"Büro\" Speakers", "cafe", {0.1f}, true));
    FakeAudioHal::Device none = FakeAudioHal::plainDevice("Fixed", "fixed", {});
    hal.add(42, none);
    hal.defaultOutput = 41;
    EXPECT_EQ(diagnoseAudioLines(hal),
              (std::vector<std::string>{
                  "AUDIO id=40 name=Studio Display Speakers volumeElements=[1, 2] levels=[0.5, 1.0]",
                  "AUDIO id=41 name=Café \"Büro\" Speakers volumeElements=[0] levels=[0.1]",
                  "AUDIO id=42 name=Fixed volumeElements=[] levels=[]",
                  "DEFAULT 41 Café \"Büro\" Speakers",
              }));
}

TEST(DiagnoseAudioTest, NoDefaultLineWhenTheQueryFails) {
    FakeAudioHal hal;
    hal.add(40, FakeAudioHal::plainDevice("Speakers", "s", {0.25f}));
    EXPECT_EQ(diagnoseAudioLines(hal),
              std::vector<std::string>{"AUDIO id=40 name=Speakers volumeElements=[1] levels=[0.25]"});
}

TEST(DiagnoseAudioTest, NothingWithoutASoundServer) {
    FakeAudioHal hal;
    hal.failWhen = [](const FakeAudioHal::Call&) { return true; };
    EXPECT_TRUE(diagnoseAudioLines(hal).empty());
}

TEST(VolumeRoundTripTest, OnlyStudioDisplaySpeakersAreTested) {
    FakeAudioHal hal;
    hal.add(40, FakeAudioHal::plainDevice("Other", "o", {0.5f}));
    hal.add(41, FakeAudioHal::plainDevice("studio DISPLAY speakers", "s", {0.3f, 0.6f}));
    const RoundTripResult result = verifyVolumeRoundTrip(hal);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"VOLUME write/read unchanged 41: true"});
    EXPECT_EQ(hal.volume(41, 1), 0.3f);
    EXPECT_EQ(hal.volume(41, 2), 0.6f);
}

TEST(VolumeRoundTripTest, NoTestSpeakersPrintsNothingAndPasses) {
    FakeAudioHal hal;
    hal.add(40, FakeAudioHal::plainDevice("Other", "o", {0.5f}));
    const RoundTripResult result = verifyVolumeRoundTrip(hal);
    EXPECT_TRUE(result.passed);
    EXPECT_TRUE(result.lines.empty());
}

TEST(VolumeRoundTripTest, ElementsWithoutReadableLevelsFailWithoutWriting) {
    FakeAudioHal hal;
    hal.add(41, FakeAudioHal::plainDevice("Studio Display Speakers", "s", {0.3f, 0.6f}));
    // Readable while the outputs are listed, unreadable afterwards.
    int reads = 0;
    hal.failWhen = [&reads](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::GetData && call.address.selector == audio::kVolume &&
               ++reads > 2;
    };
    const RoundTripResult result = verifyVolumeRoundTrip(hal);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"VOLUME write/read unchanged 41: false"});
    EXPECT_TRUE(hal.writes.empty());
}

TEST(VolumeRoundTripTest, RejectedWriteFails) {
    FakeAudioHal hal;
    hal.add(41, FakeAudioHal::plainDevice("Studio Display Speakers", "s", {0.3f}));
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::SetData;
    };
    const RoundTripResult result = verifyVolumeRoundTrip(hal);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.lines, std::vector<std::string>{"VOLUME write/read unchanged 41: false"});
}

TEST(BracketedListTest, CommaAndBlankBetweenItems) {
    EXPECT_EQ(bracketedList({}), "[]");
    EXPECT_EQ(bracketedList({"1", "2"}), "[1, 2]");
}

}  // namespace
}  // namespace vantle
