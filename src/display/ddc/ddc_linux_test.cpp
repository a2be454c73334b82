#include "display/ddc/ddc_linux.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "display/ddc/ddc_sysfs_linux.h"
#include "display/ddc/testing/stand_in_ddc_bus.h"

namespace vantle::ddc {
namespace {

using namespace std::chrono_literals;
using testing::StandInDdcBus;
using testing::StandInMonitor;
using Clock = std::chrono::steady_clock;

std::vector<std::uint8_t> edid(std::uint8_t seed) {
    std::vector<std::uint8_t> bytes(128);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(seed + i);
    }
    return bytes;
}

DisplayIdentity display(std::uint32_t id, std::uint8_t seed, std::string connector = {}) {
    return {id, edid(seed), std::move(connector)};
}

// A backend on the given stand-in bus, counting how often it loads the library.
struct StandInBackend {
    explicit StandInBackend(std::shared_ptr<StandInDdcBus> standIn, bool i2cBuses = true) : bus(std::move(standIn)) {
        DdcBrightness::Options options;
        options.hasI2cBuses = [i2cBuses] { return i2cBuses; };
        options.loadBus = [this]() -> std::shared_ptr<DdcBus> {
            ++loads;
            return bus;
        };
        options.timings.refreshInterval = 1h;
        options.timings.retryDelays = {10ms, 20ms};
        options.timings.settleAfterWake = 20ms;
        backend = std::make_unique<DdcBrightness>(std::move(options));
    }

    // Waits for the backend's level of a display, which arrives from its thread.
    bool waitForLevel(std::uint32_t id, float level) {
        return bus->waitUntil([&] { return backend->get(id) == level; });
    }

    std::shared_ptr<StandInDdcBus> bus;
    int loads = 0;
    std::unique_ptr<DdcBrightness> backend;
};

template <typename Call>
std::chrono::milliseconds timed(Call call) {
    const auto start = Clock::now();
    call();
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
}

TEST(DdcStandInMonitorTest, NoI2cBusesNeverLoadsTheLibrary) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "card0-DP-1"}}),
                       /*i2cBuses=*/false);
    ddc.backend->updateDisplays({display(1, 1, "DP-1")});
    EXPECT_EQ(ddc.loads, 0);
    EXPECT_EQ(ddc.backend->get(1), std::nullopt);
    EXPECT_FALSE(ddc.backend->set(1, 0.5f));
    EXPECT_EQ(ddc.bus->opens(0), 0);
}

TEST(DdcStandInMonitorTest, NoDisplayLeftForDdcNeverLoadsTheLibrary) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "card0-DP-1"}}));
    ddc.backend->updateDisplays({});
    EXPECT_EQ(ddc.loads, 0);
}

TEST(DdcStandInMonitorTest, LibraryThatCannotBeLoadedControlsNothing) {
    DdcBrightness::Options options;
    options.hasI2cBuses = [] { return true; };
    options.loadBus = [] { return std::shared_ptr<DdcBus>(); };
    DdcBrightness backend(std::move(options));
    backend.updateDisplays({display(1, 1)});
    EXPECT_EQ(backend.get(1), std::nullopt);
    EXPECT_FALSE(backend.set(1, 0.5f));
}

TEST(DdcStandInMonitorTest, LevelIsReadInTheBackgroundAfterMatching) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 30, 60}}));
    ddc.backend->updateDisplays({display(7, 1, "HDMI-1")});
    EXPECT_EQ(ddc.loads, 1);
    EXPECT_TRUE(ddc.waitForLevel(7, 0.5f));
    EXPECT_EQ(ddc.bus->opens(0), 1);
}

TEST(DdcStandInMonitorTest, UnmatchedDisplayIsNotControlled) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "card0-DP-1", 25, 100}}));
    ddc.backend->updateDisplays({display(1, 1, "DP-1"), display(2, 9, "DP-2")});
    // Both displays are matched in one pass, so once the first has a level the second is settled.
    ASSERT_TRUE(ddc.waitForLevel(1, 0.25f));
    EXPECT_EQ(ddc.backend->get(2), std::nullopt);
    EXPECT_FALSE(ddc.backend->set(2, 0.5f));
    EXPECT_FALSE(ddc.backend->set(99, 0.5f));
}

TEST(DdcStandInMonitorTest, SetWritesTheLevelTimesTheMonitorsMaximumRounded) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 30, 60}}));
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.5f));
    EXPECT_TRUE(ddc.backend->set(1, 0.333f));
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->writes(0).size() == 1; }));
    EXPECT_EQ(ddc.bus->writes(0), std::vector<std::uint16_t>{20});
    EXPECT_TRUE(ddc.waitForLevel(1, 20.0f / 60.0f));
    EXPECT_FALSE(ddc.backend->set(1, std::numeric_limits<float>::quiet_NaN()));
}

TEST(DdcStandInMonitorTest, SlowStandInMonitorNeverDelaysTheCaller) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 50, 100}}));
    ddc.bus->setDelay(0, 300ms);
    EXPECT_LT(timed([&] { ddc.backend->updateDisplays({display(1, 1)}); }), 50ms);
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->busy(0); }));
    for (int i = 1; i <= 5; ++i) {
        EXPECT_LT(timed([&] { ddc.backend->set(1, static_cast<float>(i) / 10.0f); }), 50ms);
        EXPECT_LT(timed([&] { (void)ddc.backend->get(1); }), 50ms);
    }
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return !ddc.bus->writes(0).empty() && ddc.bus->writes(0).back() == 50; }));
}

TEST(DdcStandInMonitorTest, NewestValueWinsWhenWritesPileUp) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 50, 100}}));
    ddc.bus->setDelay(0, 300ms);
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.5f));
    for (int i = 1; i <= 10; ++i) {
        ASSERT_TRUE(ddc.backend->set(1, static_cast<float>(i) / 10.0f));
        // The level asked for last is what the caller sees, while the monitor catches up.
        EXPECT_EQ(ddc.backend->get(1), static_cast<float>(i) / 10.0f);
        if (i == 1) {
            ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->busy(0); }));
        }
    }
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return !ddc.bus->writes(0).empty() && ddc.bus->writes(0).back() == 100; }));
    const auto writes = ddc.bus->writes(0);
    EXPECT_LE(writes.size(), 2u);
    EXPECT_EQ(writes.back(), 100);
    EXPECT_TRUE(ddc.waitForLevel(1, 1.0f));
}

TEST(DdcStandInMonitorTest, StuckStandInMonitorDoesNotDelayWritesToAnother) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(
        std::vector<StandInMonitor>{{edid(1), "", 50, 100}, {edid(2), "", 40, 100}}));
    ddc.bus->hold(0);
    ddc.backend->updateDisplays({display(1, 1), display(2, 2)});
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->busy(0); }));
    ASSERT_TRUE(ddc.waitForLevel(2, 0.4f));
    EXPECT_TRUE(ddc.backend->set(1, 0.9f));
    EXPECT_TRUE(ddc.backend->set(2, 0.7f));
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->writes(1) == std::vector<std::uint16_t>{70}; }, 1s));
    EXPECT_TRUE(ddc.bus->busy(0));
    EXPECT_TRUE(ddc.bus->writes(0).empty());
    ddc.bus->release(0);
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->writes(0) == std::vector<std::uint16_t>{90}; }));
}

TEST(DdcStandInMonitorTest, IdenticalStandInMonitorsAreToldApartByConnector) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(
        std::vector<StandInMonitor>{{edid(1), "card0-DP-1", 20, 100}, {edid(1), "card1-DP-2", 80, 100}}));
    ddc.backend->updateDisplays({display(1, 1, "DP-2"), display(2, 1, "DP-1")});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.8f));
    ASSERT_TRUE(ddc.waitForLevel(2, 0.2f));
    EXPECT_TRUE(ddc.backend->set(1, 0.5f));
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->writes(1) == std::vector<std::uint16_t>{50}; }));
    EXPECT_TRUE(ddc.bus->writes(0).empty());
}

TEST(DdcStandInMonitorTest, IdenticalStandInMonitorsWithoutConnectorsAreNotGuessed) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(
        std::vector<StandInMonitor>{{edid(1), "", 20, 100}, {edid(1), "", 80, 100}, {edid(3), "", 30, 100}}));
    ddc.backend->updateDisplays({display(1, 1, "DP-1"), display(2, 1, "DP-2"), display(3, 3, "HDMI-1")});
    ASSERT_TRUE(ddc.waitForLevel(3, 0.3f));
    EXPECT_EQ(ddc.backend->get(1), std::nullopt);
    EXPECT_EQ(ddc.backend->get(2), std::nullopt);
    EXPECT_FALSE(ddc.backend->set(1, 0.5f));
    EXPECT_EQ(ddc.bus->opens(0) + ddc.bus->opens(1), 0);
}

TEST(DdcStandInMonitorTest, RefusedWriteIsRetriedThenTheLevelIsReadAgain) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    ddc.bus->setFailWrites(0, true);
    EXPECT_TRUE(ddc.backend->set(1, 0.9f));
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->reads(0) == 2; }));
    EXPECT_EQ(ddc.bus->writeAttempts(0), 3);
    EXPECT_TRUE(ddc.waitForLevel(1, 0.4f));
}

TEST(DdcStandInMonitorTest, RefreshReadsChangesMadeOnTheStandInMonitor) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    ddc.bus->setCurrent(0, 75);
    ddc.backend->refresh();
    EXPECT_TRUE(ddc.waitForLevel(1, 0.75f));
}

TEST(DdcStandInMonitorTest, StandInMonitorStaysOpenAcrossUpdatesAndClosesWhenGone) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    ddc.backend->updateDisplays({display(5, 1)});
    ASSERT_TRUE(ddc.waitForLevel(5, 0.4f));
    EXPECT_EQ(ddc.bus->opens(0), 1);
    EXPECT_EQ(ddc.backend->get(1), std::nullopt);
    ddc.backend->updateDisplays({});
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->closes(0) == 1; }));
    EXPECT_EQ(ddc.backend->get(5), std::nullopt);
    EXPECT_EQ(ddc.loads, 1);
}

TEST(DdcStandInMonitorTest, DestructionDoesNotWaitLongForAStuckStandInMonitor) {
    auto bus = std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}});
    {
        StandInBackend ddc(bus);
        bus->hold(0);
        ddc.backend->updateDisplays({display(1, 1)});
        ASSERT_TRUE(bus->waitUntil([&] { return bus->busy(0); }));
        EXPECT_LT(timed([&] { ddc.backend.reset(); }), 1500ms);
    }
    // The thread that was let go finishes and closes the monitor once the command returns.
    bus->release(0);
    EXPECT_TRUE(bus->waitUntil([&] { return bus->closes(0) == 1; }));
}

TEST(DdcStandInMonitorTest, StandInMonitorAttachedLaterIsFoundByASearchForTheNewDisplay) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "card0-DP-1", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1, "DP-1")});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    const std::size_t plugged = ddc.bus->attach({edid(2), "card0-DP-2", 70, 100});
    ddc.backend->updateDisplays({display(1, 1, "DP-1"), display(2, 2, "DP-2")});
    // The library lists only what it found at first; the new monitor needs a new look.
    ASSERT_TRUE(ddc.waitForLevel(2, 0.7f));
    EXPECT_EQ(ddc.bus->listings(), 1);
    EXPECT_EQ(ddc.bus->rescans(), 1);
    EXPECT_EQ(ddc.bus->opens(plugged), 1);
    // The display that stayed kept its worker and its level throughout.
    EXPECT_EQ(ddc.backend->get(1), 0.4f);
    EXPECT_EQ(ddc.bus->opens(0), 1);

    // The same displays again (a change of layout, say) start no search.
    ddc.backend->updateDisplays({display(1, 1, "DP-1"), display(2, 2, "DP-2")});
    ddc.backend->updateDisplays({display(1, 1, "DP-1"), display(2, 2, "DP-2")});
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(ddc.bus->listings() + ddc.bus->rescans(), 2);

    // The first monitor's handle was lost to the new look: its next command opens it again.
    EXPECT_TRUE(ddc.backend->set(1, 0.3f));
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->writes(0) == std::vector<std::uint16_t>{30}; }));
    EXPECT_EQ(ddc.bus->opens(0), 2);
}

TEST(DdcStandInMonitorTest, DisplayWithoutAStandInMonitorIsSearchedForOnceUntilConnectorsChange) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1), display(3, 3)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    for (int change = 0; change < 3; ++change) {
        ddc.backend->updateDisplays({display(1, 1), display(3, 3)});
    }
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(ddc.bus->listings() + ddc.bus->rescans(), 1);

    // A monitor switched on late answers on its bus only now.
    ddc.bus->attach({edid(3), "", 90, 100});
    ddc.backend->searchAgain();
    EXPECT_TRUE(ddc.waitForLevel(3, 0.9f));
    EXPECT_EQ(ddc.bus->rescans(), 1);
}

TEST(DdcStandInMonitorTest, RemovedDisplayStopsItsWorkerWithoutWaitingForTheBus) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    // A search for another display hangs in the library meanwhile.
    ddc.bus->holdSearches();
    EXPECT_LT(timed([&] { ddc.backend->updateDisplays({display(4, 4)}); }), 50ms);
    EXPECT_EQ(ddc.backend->get(1), std::nullopt);
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->closes(0) == 1; }, 1s));
    ddc.bus->releaseSearches();
}

TEST(DdcStandInMonitorTest, RepluggedStandInMonitorIsFoundAgain) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(std::vector<StandInMonitor>{{edid(1), "card0-DP-1", 40, 100}}));
    ddc.backend->updateDisplays({display(1, 1, "DP-1")});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    ddc.bus->detach(0);
    ddc.backend->updateDisplays({});
    ASSERT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->closes(0) == 1; }));
    const std::size_t again = ddc.bus->attach({edid(1), "card0-DP-1", 60, 100});
    ddc.backend->updateDisplays({display(1, 1, "DP-1")});
    EXPECT_TRUE(ddc.waitForLevel(1, 0.6f));
    EXPECT_EQ(ddc.bus->opens(again), 1);
}

TEST(DdcStandInMonitorTest, WakingFromSleepReopensEveryStandInMonitorAndReadsItAgain) {
    StandInBackend ddc(std::make_shared<StandInDdcBus>(
        std::vector<StandInMonitor>{{edid(1), "", 40, 100}, {edid(2), "", 50, 100}}));
    ddc.backend->updateDisplays({display(1, 1), display(2, 2)});
    ASSERT_TRUE(ddc.waitForLevel(1, 0.4f));
    ASSERT_TRUE(ddc.waitForLevel(2, 0.5f));
    // Some monitors come back from standby at a level of their own.
    ddc.bus->setCurrent(0, 80);
    ddc.backend->reopenAfterSleep();
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->closes(0) == 1 && ddc.bus->closes(1) == 1; }));
    EXPECT_TRUE(ddc.waitForLevel(1, 0.8f));
    EXPECT_TRUE(ddc.bus->waitUntil([&] { return ddc.bus->opens(0) == 2 && ddc.bus->opens(1) == 2; }));
}

// This machine's own state: with no /dev/i2c-* the real backend must not even load libddcutil,
// which would print to standard output.
TEST(DdcRealMachineTest, WithoutI2cBusesLoadsNothingAndPrintsNothing) {
    if (hasI2cBuses()) {
        GTEST_SKIP() << "this machine has I2C buses";
    }
    const bool loadedBefore = dlopen("libddcutil.so.4", RTLD_NOW | RTLD_NOLOAD) != nullptr;
    ::testing::internal::CaptureStdout();
    {
        DdcBrightness backend;
        backend.updateDisplays({display(1, 1, "DP-1")});
        EXPECT_EQ(backend.get(1), std::nullopt);
        EXPECT_FALSE(backend.set(1, 0.5f));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(dlopen("libddcutil.so.4", RTLD_NOW | RTLD_NOLOAD) != nullptr, loadedBefore);
}

TEST(DdcRealMachineTest, LibddcutilLoadsWithoutPrinting) {
    ::testing::internal::CaptureStdout();
    const auto bus = loadLibddcutilBus();
    if (bus) {
        (void)bus->list();
    }
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace vantle::ddc
