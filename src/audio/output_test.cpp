#include "audio/output.h"

#include <gtest/gtest.h>

#include <cmath>

#include "audio/testing/fake_audio_hal.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

class OutputTest : public ::testing::Test {
protected:
    FakeAudioHal hal;
};

TEST_F(OutputTest, SettableMasterElementIsTheOnlyElement) {
    hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.4f, 0.6f}, true));
    const std::vector<Output> listed = outputs(hal);
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0], (Output{10, "uid-10", "Speakers", {0}}));
}

TEST_F(OutputTest, StereoWithoutMasterUsesBothChannels) {
    hal.add(11, FakeAudioHal::plainDevice("Stereo", "uid-11", {0.1f, 0.2f}));
    const Output output = outputs(hal).at(0);
    EXPECT_EQ(output.elements, (std::vector<std::uint32_t>{1, 2}));
    EXPECT_TRUE(output.write(hal, {0.5f, 0.7f}));
    EXPECT_EQ(hal.writes, (std::vector<FakeAudioHal::Write>{{11, 1, 0.5f}, {11, 2, 0.7f}}));
}

TEST_F(OutputTest, ElementThatCannotBothBeReadAndSetIsNotUsable) {
    FakeAudioHal::Device device = FakeAudioHal::plainDevice("Odd", "uid-12", {0.1f, 0.2f, 0.3f}, true);
    device.elements[0].settable = false;  // main element read-only
    device.elements[1].readable = false;  // channel 1 write-only
    hal.add(12, device);
    EXPECT_EQ(outputs(hal).at(0).elements, (std::vector<std::uint32_t>{2, 3}));
}

TEST_F(OutputTest, DeviceWithoutUsableElementIsListedAndCannotBeWritten) {
    FakeAudioHal::Device device = FakeAudioHal::plainDevice("Fixed", "uid-13", {0.3f});
    device.elements[1].settable = false;
    hal.add(13, device);
    const Output output = outputs(hal).at(0);
    EXPECT_TRUE(output.elements.empty());
    EXPECT_FALSE(output.write(hal, {}));
    EXPECT_TRUE(hal.writes.empty());
}

TEST_F(OutputTest, ElementsAboveThirtyTwoAreNeverConsidered) {
    FakeAudioHal::Device device;
    device.name = "Many";
    device.uid = "uid-14";
    device.elements[32] = {};
    device.elements[33] = {};
    hal.add(14, device);
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        EXPECT_LE(call.address.element, 32u);
        return false;
    };
    EXPECT_EQ(outputs(hal).at(0).elements, (std::vector<std::uint32_t>{32}));
}

TEST_F(OutputTest, InputOnlyDeviceIsNotListed) {
    FakeAudioHal::Device microphone = FakeAudioHal::plainDevice("Mic", "uid-15", {0.5f});
    microphone.outputStreams = 0;
    hal.add(15, microphone);
    hal.add(16, FakeAudioHal::plainDevice("Speakers", "uid-16", {0.5f}));
    const std::vector<Output> listed = outputs(hal);
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].id, 16u);
}

TEST_F(OutputTest, WritesAreClamped) {
    hal.add(17, FakeAudioHal::plainDevice("Mono", "uid-17", {0.5f}));
    const Output output = outputs(hal).at(0);
    output.write(hal, {1.5f});
    EXPECT_EQ(hal.volume(17, 1), 1.0f);
    output.write(hal, {-0.2f});
    EXPECT_EQ(hal.volume(17, 1), 0.0f);
    hal.devices[17].elements[1].volume = 0.5f;
    output.write(hal, {std::nanf("")});
    EXPECT_EQ(hal.volume(17, 1), 0.0f);
}

TEST_F(OutputTest, WrongNumberOfLevelsWritesNothing) {
    hal.add(18, FakeAudioHal::plainDevice("Stereo", "uid-18", {0.1f, 0.2f}));
    EXPECT_FALSE(outputs(hal).at(0).write(hal, {0.3f}));
    EXPECT_TRUE(hal.writes.empty());
}

TEST_F(OutputTest, OneFailedWriteDoesNotStopTheOther) {
    hal.add(19, FakeAudioHal::plainDevice("Stereo", "uid-19", {0.1f, 0.2f}));
    const Output output = outputs(hal).at(0);
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::SetData && call.address.element == 1;
    };
    EXPECT_FALSE(output.write(hal, {0.8f, 0.9f}));
    EXPECT_EQ(hal.volume(19, 1), 0.1f);
    EXPECT_EQ(hal.volume(19, 2), 0.9f);
}

TEST_F(OutputTest, ASequenceStopsAfterTheFirstChangeThatFails) {
    hal.add(21, FakeAudioHal::plainDevice("One", "uid-21", {0.1f}, true));
    hal.add(22, FakeAudioHal::plainDevice("Two", "uid-22", {0.2f, 0.2f}));
    hal.add(23, FakeAudioHal::plainDevice("Three", "uid-23", {0.3f}, true));
    const std::vector<Output> listed = outputs(hal);
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::SetData && call.object == 22 && call.address.element == 1;
    };
    const std::vector<bool> written = writeLevelsInSequence(
        hal, {{&listed[0], {0.5f}}, {&listed[1], {0.5f, 0.5f}}, {&listed[2], {0.5f}}});
    EXPECT_EQ(written, (std::vector<bool>{true, false}));
    // The failing change still wrote all of its elements that it could; the third heard nothing.
    EXPECT_EQ(hal.writes, (std::vector<FakeAudioHal::Write>{{21, 0, 0.5f}, {22, 2, 0.5f}}));
    EXPECT_EQ(hal.volume(23, 0), 0.3f);
}

TEST_F(OutputTest, ASequenceEndsAtAChangeWithTheWrongNumberOfLevels) {
    hal.add(21, FakeAudioHal::plainDevice("One", "uid-21", {0.1f}, true));
    hal.add(22, FakeAudioHal::plainDevice("Two", "uid-22", {0.2f, 0.2f}));
    hal.add(23, FakeAudioHal::plainDevice("Three", "uid-23", {0.3f}, true));
    const std::vector<Output> listed = outputs(hal);
    const std::vector<bool> written =
        writeLevelsInSequence(hal, {{&listed[0], {0.5f}}, {&listed[1], {0.5f}}, {&listed[2], {0.5f}}});
    EXPECT_EQ(written, (std::vector<bool>{true, false}));
    EXPECT_EQ(hal.writes, (std::vector<FakeAudioHal::Write>{{21, 0, 0.5f}}));
    EXPECT_TRUE(writeLevelsInSequence(hal, {}).empty());
}

TEST_F(OutputTest, LevelsLeaveOutAFailedRead) {
    hal.add(20, FakeAudioHal::plainDevice("Stereo", "uid-20", {0.1f, 0.2f}));
    const Output output = outputs(hal).at(0);
    hal.devices[20].elements[2].readable = false;
    EXPECT_EQ(output.levels(hal), std::vector<float>{0.1f});
}

TEST_F(OutputTest, UnreadableNameIsEmpty) {
    FakeAudioHal::Device device = FakeAudioHal::plainDevice("", "uid-21", {0.1f});
    device.name.reset();
    hal.add(21, device);
    EXPECT_EQ(outputs(hal).at(0).name, "");
}

TEST_F(OutputTest, UnreadableDeviceListGivesNoOutputs) {
    hal.add(22, FakeAudioHal::plainDevice("Speakers", "uid-22", {0.1f}));
    hal.failWhen = [](const FakeAudioHal::Call& call) { return call.object == audio::kSystemObject; };
    EXPECT_TRUE(outputs(hal).empty());
}

TEST_F(OutputTest, ListKeepsTheHardwareOrder) {
    hal.add(30, FakeAudioHal::plainDevice("B", "b", {0.1f}));
    hal.add(5, FakeAudioHal::plainDevice("A", "a", {0.1f}));
    const std::vector<Output> listed = outputs(hal);
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0].id, 30u);
    EXPECT_EQ(listed[1].id, 5u);
}

TEST(PropertyHelpersTest, AddressDefaultsToOutputScope) {
    EXPECT_EQ(address(audio::kVolume, 3), (PropertyAddress{fourCharCode("volm"), fourCharCode("outp"), 3}));
    EXPECT_EQ(fourCharCode("uid "), 0x75696420u);
}

}  // namespace
}  // namespace vantle
