#include "audio/volume_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "audio/testing/fake_audio_hal.h"
#include "localization/localization.h"
#include "services/testing/memory_defaults_store.h"
#include "services/testing/recording_message_line.h"

namespace vantle {
namespace {

using testing::FakeAudioHal;

class VolumeControlTest : public ::testing::Test {
protected:
    // An aggregate (100) of device 10 and of aggregate 90, itself made of 30 and 20.
    void addNestedAggregate() {
        hal.add(10, FakeAudioHal::plainDevice("Ten", "uid-10", {0.1f, 0.1f}));
        hal.add(20, FakeAudioHal::plainDevice("Twenty", "uid-20", {0.2f}, true));
        hal.add(30, FakeAudioHal::plainDevice("Thirty", "uid-30", {0.3f, 0.3f}));
        FakeAudioHal::Device inner = FakeAudioHal::plainDevice("Inner", "uid-90", {});
        inner.subDevices = {{30, 20}};
        hal.add(90, inner);
        FakeAudioHal::Device outer = FakeAudioHal::plainDevice("Outer", "uid-100", {});
        outer.subDevices = {{10, 90}};
        hal.add(100, outer);
        hal.defaultOutput = 100;
    }

    // Three plain devices 11, 12, 13 under aggregate 50. (Id 1 is the system object.)
    void addThreeDeviceAggregate() {
        hal.add(11, FakeAudioHal::plainDevice("One", "uid-11", {0.1f}, true));
        hal.add(12, FakeAudioHal::plainDevice("Two", "uid-12", {0.2f, 0.25f}));
        hal.add(13, FakeAudioHal::plainDevice("Three", "uid-13", {0.3f}, true));
        FakeAudioHal::Device aggregate = FakeAudioHal::plainDevice("Group", "uid-50", {});
        aggregate.subDevices = {{11, 12, 13}};
        hal.add(50, aggregate);
        hal.defaultOutput = 50;
    }

    static bool writeTo(const FakeAudioHal::Call& call, std::uint32_t device) {
        return call.operation == FakeAudioHal::Operation::SetData && call.object == device;
    }

    const std::string& lastMessage() const { return messages.reports.back(); }

    FakeAudioHal hal;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::RecordingMessageLine messages;
    int refreshes = 0;
    VolumeControl control{hal, defaults, messages, [this] { ++refreshes; }};
};

TEST_F(VolumeControlTest, PlainDefaultDeviceIsTheOnlyLeaf) {
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f, 0.5f}));
    hal.defaultOutput = 4;
    control.applyVolume(0.25f);
    EXPECT_EQ(hal.volume(4, 1), 0.25f);
    EXPECT_EQ(hal.volume(4, 2), 0.25f);
    EXPECT_EQ(lastMessage(), L("s092", 1));
    EXPECT_EQ(refreshes, 1);
}

TEST_F(VolumeControlTest, APlainDefaultDeviceIsFoundWithoutTheDeviceList) {
    hal.add(3, FakeAudioHal::plainDevice("Other", "uid-3", {0.5f}, true));
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f, 0.5f}));
    hal.defaultOutput = 4;
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return call.object == audio::kSystemObject && call.address.selector == audio::kDevices;
    };
    EXPECT_EQ(control.devices(), (std::vector<Output>{{4, "uid-4", "Speakers", {1, 2}}}));
    // An aggregate's leaves keep the list's order, so they still need it.
    hal.defaultOutput = std::nullopt;
    addThreeDeviceAggregate();
    EXPECT_TRUE(control.devices().empty());
    hal.failWhen = nullptr;
    EXPECT_EQ(control.devices().size(), 3u);
}

TEST_F(VolumeControlTest, APlainDefaultDeviceWithoutOutputStreamsIsNoLeaf) {
    hal.add(4, FakeAudioHal::plainDevice("Microphone", "uid-4", {0.5f}, true));
    hal.devices[4].outputStreams = 0;
    hal.defaultOutput = 4;
    EXPECT_TRUE(control.devices().empty());
    control.applyVolume(0.3f);
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_EQ(lastMessage(), L("s090"));
}

TEST_F(VolumeControlTest, NestedAggregateSetsAllThreeLeavesToOneLevel) {
    addNestedAggregate();
    const std::vector<Output> leaves = control.devices();
    ASSERT_EQ(leaves.size(), 3u);
    EXPECT_EQ(leaves[0].id, 10u);  // in the hardware's order, not by id
    control.applyVolume(0.6f);
    EXPECT_EQ(hal.volume(10, 1), 0.6f);
    EXPECT_EQ(hal.volume(10, 2), 0.6f);
    EXPECT_EQ(hal.volume(20, 0), 0.6f);
    EXPECT_EQ(hal.volume(30, 1), 0.6f);
    EXPECT_EQ(hal.volume(30, 2), 0.6f);
    EXPECT_EQ(lastMessage(), L("s092", 3));
}

TEST_F(VolumeControlTest, AggregatesAreTheOutputsWithSubDevices) {
    addNestedAggregate();
    std::vector<std::uint32_t> ids;
    for (const Output& output : control.aggregates()) {
        ids.push_back(output.id);
    }
    EXPECT_EQ(ids, (std::vector<std::uint32_t>{90, 100}));
}

TEST_F(VolumeControlTest, CycleFindsNothingToActOn) {
    FakeAudioHal::Device a = FakeAudioHal::plainDevice("A", "uid-a", {0.5f});
    a.subDevices = {{12}};
    FakeAudioHal::Device b = FakeAudioHal::plainDevice("B", "uid-b", {0.5f});
    b.subDevices = {{11}};
    hal.add(11, a);
    hal.add(12, b);
    hal.defaultOutput = 11;
    control.applyVolume(0.9f);
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_EQ(lastMessage(), L("s090"));
    EXPECT_EQ(refreshes, 0);
}

TEST_F(VolumeControlTest, SevenLeavesFindNothingSixAreSet) {
    FakeAudioHal::Device group = FakeAudioHal::plainDevice("Group", "uid-group", {});
    group.subDevices = std::vector<std::uint32_t>{};
    for (std::uint32_t id = 11; id <= 17; ++id) {
        hal.add(id, FakeAudioHal::plainDevice("D", "uid-" + std::to_string(id), {0.5f}));
        group.subDevices->push_back(id);
    }
    hal.add(99, group);
    hal.defaultOutput = 99;
    control.applyVolume(0.2f);
    EXPECT_EQ(lastMessage(), L("s090"));
    hal.devices[99].subDevices->pop_back();
    control.applyVolume(0.2f);
    EXPECT_EQ(lastMessage(), L("s092", 6));
}

TEST_F(VolumeControlTest, LeafWithoutOutputStreamsStopsTheCommand) {
    addThreeDeviceAggregate();
    hal.devices[12].outputStreams = 0;
    EXPECT_TRUE(control.devices().empty());
    control.applyVolume(0.9f);
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_EQ(lastMessage(), L("s090"));
}

TEST_F(VolumeControlTest, UnreadableElementStopsTheCommandBeforeAnyWrite) {
    addThreeDeviceAggregate();
    // The probe while listing succeeds; the read of the level that follows fails.
    int reads = 0;
    hal.failWhen = [&reads](const FakeAudioHal::Call& call) {
        return call.operation == FakeAudioHal::Operation::GetData && call.object == 13 &&
               call.address.selector == audio::kVolume && ++reads > 1;
    };
    control.applyVolume(0.9f);
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_EQ(lastMessage(), L("s090"));
}

TEST_F(VolumeControlTest, NoDefaultOutputFindsNothing) {
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f}));
    control.applyVolume(0.3f);
    EXPECT_EQ(lastMessage(), L("s090"));
}

TEST_F(VolumeControlTest, SecondOfThreeFailingRollsAllBackAndNeverTouchesTheThird) {
    addThreeDeviceAggregate();
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return writeTo(call, 12) && call.address.element == 2;
    };
    control.applyVolume(0.9f);
    for (const FakeAudioHal::Write& write : hal.writes) {
        EXPECT_FALSE(write.device == 13 && write.level == 0.9f);
    }
    EXPECT_EQ(hal.volume(11, 0), 0.1f);
    EXPECT_EQ(hal.volume(12, 1), 0.2f);
    EXPECT_EQ(hal.volume(12, 2), 0.25f);
    EXPECT_EQ(hal.volume(13, 0), 0.3f);
    EXPECT_EQ(lastMessage(), L("s091"));
    EXPECT_EQ(refreshes, 1);
}

TEST_F(VolumeControlTest, SlidersDivideByAHundred) {
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f}));
    hal.defaultOutput = 4;
    control.setVolume(37);
    EXPECT_EQ(hal.volume(4, 1), static_cast<float>(37.0 / 100.0));
    control.quickVolumeChanged(100);
    EXPECT_EQ(hal.volume(4, 1), 1.0f);
}

TEST_F(VolumeControlTest, OutOfRangeAndNanLevelsAreClamped) {
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f}));
    hal.defaultOutput = 4;
    control.applyVolume(1.7f);
    EXPECT_EQ(hal.volume(4, 1), 1.0f);
    control.applyVolume(std::nanf(""));
    EXPECT_EQ(hal.volume(4, 1), 0.0f);
}

TEST_F(VolumeControlTest, MuteRemembersLevelsAndUnmuteRestoresThem) {
    addNestedAggregate();
    control.toggleMute();
    EXPECT_TRUE(control.muted());
    EXPECT_EQ(lastMessage(), L("s095"));
    EXPECT_EQ(hal.volume(10, 1), 0.0f);
    EXPECT_EQ(hal.volume(20, 0), 0.0f);
    EXPECT_EQ(control.saved(), (SavedLevels{{"uid-10", {0.1f, 0.1f}}, {"uid-20", {0.2f}}, {"uid-30", {0.3f, 0.3f}}}));
    control.toggleMute();
    EXPECT_FALSE(control.muted());
    EXPECT_EQ(lastMessage(), L("s096"));
    EXPECT_EQ(hal.volume(10, 2), 0.1f);
    EXPECT_EQ(hal.volume(20, 0), 0.2f);
    EXPECT_EQ(hal.volume(30, 1), 0.3f);
}

TEST_F(VolumeControlTest, LevelsAreStoredBeforeTheFirstWrite) {
    addThreeDeviceAggregate();
    hal.failWhen = [this](const FakeAudioHal::Call& call) {
        if (call.operation == FakeAudioHal::Operation::SetData) {
            EXPECT_FALSE(loadSavedLevels(defaults).empty());
        }
        return false;
    };
    control.toggleMute();
}

TEST_F(VolumeControlTest, MuteOfThreeWithTheSecondFailingWritesAllThenRestores) {
    addThreeDeviceAggregate();
    hal.failWhen = [](const FakeAudioHal::Call& call) {
        return writeTo(call, 12) && call.address.element == 1;
    };
    control.toggleMute();
    // Every device was written with 0 before the restore.
    for (std::uint32_t device : {11u, 12u, 13u}) {
        bool zeroed = false;
        for (const FakeAudioHal::Write& write : hal.writes) {
            zeroed = zeroed || (write.device == device && write.level == 0.0f);
        }
        EXPECT_TRUE(zeroed) << device;
    }
    EXPECT_EQ(lastMessage(), L("s094"));
    EXPECT_EQ(hal.volume(11, 0), 0.1f);
    EXPECT_EQ(hal.volume(13, 0), 0.3f);
    // Device 12 cannot take its channel 1 back, so it stays remembered.
    EXPECT_EQ(control.saved(), (SavedLevels{{"uid-12", {0.2f, 0.25f}}}));
}

TEST_F(VolumeControlTest, UnpluggedDeviceStaysRememberedUntilItIsBack) {
    addThreeDeviceAggregate();
    control.toggleMute();
    const FakeAudioHal::Device unplugged = hal.devices[13];
    hal.devices.erase(13);
    hal.order.erase(std::find(hal.order.begin(), hal.order.end(), 13u));
    control.toggleMute();
    EXPECT_EQ(lastMessage(), L("s097"));
    EXPECT_TRUE(control.muted());
    EXPECT_EQ(control.saved(), (SavedLevels{{"uid-13", {0.3f}}}));
    EXPECT_EQ(hal.volume(11, 0), 0.1f);
    EXPECT_EQ(hal.volume(12, 2), 0.25f);

    hal.add(13, unplugged);
    control.unmute();
    EXPECT_EQ(lastMessage(), L("s096"));
    EXPECT_FALSE(control.muted());
    EXPECT_EQ(hal.volume(13, 0), 0.3f);
}

TEST_F(VolumeControlTest, VolumeWhileMutedClearsOnlyTheCurrentLeaves) {
    addThreeDeviceAggregate();
    control.setSaved({{"uid-11", {0.1f}}, {"uid-elsewhere", {0.4f}}});
    control.applyVolume(0.5f);
    EXPECT_EQ(control.saved(), (SavedLevels{{"uid-elsewhere", {0.4f}}}));
    EXPECT_TRUE(control.muted());
    control.setSaved({{"uid-11", {0.1f}}, {"uid-13", {0.3f}}});
    control.applyVolume(0.5f);
    EXPECT_FALSE(control.muted());
}

TEST_F(VolumeControlTest, SavedEntryWhoseCountNoLongerMatchesIsNotWritten) {
    hal.add(4, FakeAudioHal::plainDevice("Speakers", "uid-4", {0.5f}, true));
    hal.defaultOutput = 4;
    control.setSaved({{"uid-4", {0.2f, 0.3f}}});
    control.unmute();
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_EQ(control.saved(), (SavedLevels{{"uid-4", {0.2f, 0.3f}}}));
    EXPECT_EQ(lastMessage(), L("s097"));
}

TEST_F(VolumeControlTest, MuteWithNothingToActOnSaysSo) {
    control.toggleMute();
    EXPECT_EQ(lastMessage(), L("s093"));
    EXPECT_FALSE(control.muted());
    EXPECT_EQ(refreshes, 0);
}

TEST_F(VolumeControlTest, GarbageInTheMuteMemoryMeansNotMuted) {
    store.values["mutedLevels"] = "garbage";
    EXPECT_FALSE(control.muted());
    EXPECT_TRUE(control.saved().empty());
}

TEST_F(VolumeControlTest, UnmuteIfMutedGivesTheLevelsBack) {
    hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.4f, 0.6f}));
    hal.defaultOutput = 10;
    control.toggleMute();
    ASSERT_TRUE(control.muted());
    ASSERT_FLOAT_EQ(hal.volume(10, 2), 0.0f);
    control.unmuteIfMuted();
    EXPECT_FALSE(control.muted());
    EXPECT_FLOAT_EQ(hal.volume(10, 1), 0.4f);
    EXPECT_FLOAT_EQ(hal.volume(10, 2), 0.6f);
}

TEST_F(VolumeControlTest, UnmuteIfMutedWithNothingMutedTouchesNoDeviceAndSaysNothing) {
    hal.add(10, FakeAudioHal::plainDevice("Speakers", "uid-10", {0.4f, 0.6f}));
    hal.defaultOutput = 10;
    control.unmuteIfMuted();
    EXPECT_TRUE(hal.writes.empty());
    EXPECT_TRUE(messages.reports.empty());
}

TEST_F(VolumeControlTest, OneCommandIsOneSnapshot) {
    addNestedAggregate();
    int deepest = 0;
    hal.failWhen = [&](const FakeAudioHal::Call&) {
        deepest = std::max(deepest, hal.snapshotDepth);
        EXPECT_GE(hal.snapshotDepth, 1);
        return false;
    };
    control.applyVolume(0.3f);
    control.toggleMute();
    control.toggleMute();
    EXPECT_EQ(hal.snapshotDepth, 0);
    EXPECT_GE(deepest, 1);
}

}  // namespace
}  // namespace vantle
