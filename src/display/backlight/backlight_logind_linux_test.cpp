#include <gtest/gtest.h>

#include <chrono>

#include "display/backlight/backlight_linux.h"
#include "display/backlight/testing/backlight_tree.h"
#include "display/backlight/testing/stand_in_system_bus.h"
#include "support/temporary_directory.h"

// These tests run the backend on a stand-in sysfs tree whose brightness attribute we may not open
// for writing, so that it has to ask logind, played here by a stand-in on a private bus.
//
// We run as root in CI, and root opens any regular file for writing whatever its mode, so a
// chmod cannot make the attribute unwritable. Instead brightness is a directory: opening a
// directory for writing fails for everyone, just as opening the real attribute fails for a user
// who does not own it. The stand-in then shows the written level in actual_brightness, as the
// kernel would, which is what the backend reads back.

namespace vantle {
namespace {

using testing::BacklightTree;
using testing::edidOf;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kPanelId = 0x42;
// The backend's own limit of one second, and some leeway for a loaded machine.
constexpr auto kGiveUpWithin = std::chrono::milliseconds(1500);

class BacklightStandInLogindTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(bus_.running()) << "the private dbus-daemon did not start";
        tree_.addCard("card0", "0000:00:02.0");
        tree_.addConnector("card0", "eDP-1", panelEdid_);
        tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(937).withBrightness(400).withActual(400));
    }

    void makeBrightnessUnwritable() {
        const std::filesystem::path brightness = tree_.backlightFolder("intel_backlight") / "brightness";
        std::filesystem::remove(brightness);
        std::filesystem::create_directory(brightness);
    }

    BacklightBrightness backendForPanel() {
        BacklightBrightness backend(folder_.path());
        backend.updateDisplays({{kPanelId, panelEdid_, "eDP-1"}});
        return backend;
    }

    testing::StandInSystemBus bus_;
    testing::TemporaryDirectory folder_;
    BacklightTree tree_{folder_.path()};
    std::vector<std::uint8_t> panelEdid_ = edidOf(0x40a0, 1);
};

TEST_F(BacklightStandInLogindTest, UnwritableBrightnessSetThroughStandInLogind) {
    makeBrightnessUnwritable();
    ASSERT_TRUE(bus_.startLogind(folder_.path()));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 0.5f));
    EXPECT_EQ(bus_.logindCalls(), "backlight intel_backlight 469\n");
    EXPECT_NEAR(backend.get(kPanelId).value_or(-1.0f), 469.0f / 937.0f, 1e-6f);
}

TEST_F(BacklightStandInLogindTest, RawBacklightNeverSentZeroThroughStandInLogind) {
    makeBrightnessUnwritable();
    ASSERT_TRUE(bus_.startLogind(folder_.path()));
    ASSERT_TRUE(backendForPanel().set(kPanelId, 0.0f));
    EXPECT_EQ(bus_.logindCalls(), "backlight intel_backlight 1\n");
}

TEST_F(BacklightStandInLogindTest, WritableBrightnessWrittenWithoutStandInLogind) {
    ASSERT_TRUE(bus_.startLogind(folder_.path()));
    ASSERT_TRUE(backendForPanel().set(kPanelId, 1.0f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "937");
    EXPECT_EQ(bus_.logindCalls(), "");
}

TEST_F(BacklightStandInLogindTest, SetFailsQuicklyWithoutStandInLogindOnTheBus) {
    makeBrightnessUnwritable();
    BacklightBrightness backend = backendForPanel();
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(backend.set(kPanelId, 0.5f));
    EXPECT_LT(Clock::now() - start, kGiveUpWithin);
    EXPECT_NEAR(backend.get(kPanelId).value_or(-1.0f), 400.0f / 937.0f, 1e-6f);
}

TEST_F(BacklightStandInLogindTest, SetFailsQuicklyWithoutAnySystemBus) {
    makeBrightnessUnwritable();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + (folder_.path() / "no_bus_here").string()).c_str(), 1);
    BacklightBrightness backend = backendForPanel();
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(backend.set(kPanelId, 0.5f));
    EXPECT_LT(Clock::now() - start, kGiveUpWithin);
}

TEST_F(BacklightStandInLogindTest, SetGivesUpOnAStandInLogindThatDoesNotAnswer) {
    makeBrightnessUnwritable();
    ASSERT_TRUE(bus_.startLogind(folder_.path()));
    bus_.freezeLogind();
    BacklightBrightness backend = backendForPanel();
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(backend.set(kPanelId, 0.5f));
    const Clock::duration took = Clock::now() - start;
    EXPECT_LT(took, kGiveUpWithin);
    // It did wait for the answer rather than fail for another reason.
    EXPECT_GE(took, BacklightBrightness::kLogindTimeout - std::chrono::milliseconds(100));
}

}  // namespace
}  // namespace vantle
