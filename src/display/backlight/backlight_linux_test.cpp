#include "display/backlight/backlight_linux.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "display/backlight/testing/backlight_tree.h"
#include "support/temporary_directory.h"

// These tests run the backend on a stand-in for the kernel's sysfs in a temporary folder: plain
// files and links laid out like the backlight and DRM classes of a laptop.

namespace vantle {
namespace {

using testing::BacklightTree;
using testing::edidOf;

constexpr std::uint32_t kPanelId = 0x42;

class BacklightStandInTreeTest : public ::testing::Test {
protected:
    BacklightStandInTreeTest() : tree_(folder_.path()) {
        tree_.addCard("card0", "0000:00:02.0");
        tree_.addConnector("card0", "eDP-1", panelEdid_);
    }

    // A display showing the built-in panel, as the window system reports it.
    DisplayIdentity panelDisplay() const { return {kPanelId, panelEdid_, "eDP-1"}; }

    // The backend after it was told about the given displays (the panel's display by default).
    BacklightBrightness backendFor(const std::vector<DisplayIdentity>& displays) {
        BacklightBrightness backend(folder_.path());
        backend.updateDisplays(displays);
        return backend;
    }
    BacklightBrightness backendForPanel() { return backendFor({panelDisplay()}); }

    // The backlight a set reaches: every one starts at 50 of 100, so the one that shows 100 after
    // a set to full brightness is the one in use.
    std::string backlightInUse() {
        BacklightBrightness backend = backendForPanel();
        EXPECT_TRUE(backend.set(kPanelId, 1.0f));
        for (const char* name : {"acpi_video0", "dell_backlight", "intel_backlight", "amdgpu_bl1", "alpha",
                                        "zeta"}) {
            if (std::filesystem::exists(tree_.backlightFolder(name)) && tree_.brightnessOf(name) == "100") {
                return name;
            }
        }
        return "";
    }

    std::filesystem::path panelConnectorFolder() const {
        return tree_.pciDevice("0000:00:02.0") / "drm/card0/card0-eDP-1";
    }

    testing::TemporaryDirectory folder_;
    BacklightTree tree_;
    std::vector<std::uint8_t> panelEdid_ = edidOf(0x40a0, 1);
};

TEST_F(BacklightStandInTreeTest, FirmwareBacklightPreferredOverPlatformAndRaw) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withDevice(panelConnectorFolder()));
    tree_.addBacklight(BacklightTree::Backlight("dell_backlight", "platform"));
    tree_.addBacklight(BacklightTree::Backlight("acpi_video0", "firmware").withDevice(tree_.pciDevice("0000:00:02.0")));
    EXPECT_EQ(backlightInUse(), "acpi_video0");
}

TEST_F(BacklightStandInTreeTest, PlatformBacklightPreferredOverRaw) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withDevice(panelConnectorFolder()));
    tree_.addBacklight(BacklightTree::Backlight("dell_backlight", "platform"));
    EXPECT_EQ(backlightInUse(), "dell_backlight");
}

TEST_F(BacklightStandInTreeTest, RawBacklightOfThePanelsCardPreferredOverAnotherCards) {
    tree_.addCard("card1", "0000:01:00.0");
    tree_.addBacklight(BacklightTree::Backlight("amdgpu_bl1", "raw").withDevice(tree_.pciDevice("0000:01:00.0")));
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withDevice(panelConnectorFolder()));
    EXPECT_EQ(backlightInUse(), "intel_backlight");
}

TEST_F(BacklightStandInTreeTest, RawBacklightOnThePanelsGpuCountsAsTheCards) {
    // amdgpu registers its backlight on the PCI device, the parent of the card's folder.
    tree_.addBacklight(BacklightTree::Backlight("alpha", "raw"));
    tree_.addBacklight(BacklightTree::Backlight("amdgpu_bl1", "raw").withDevice(tree_.pciDevice("0000:00:02.0")));
    EXPECT_EQ(backlightInUse(), "amdgpu_bl1");
}

TEST_F(BacklightStandInTreeTest, BacklightsOfTheSameStandingChosenByName) {
    tree_.addBacklight(BacklightTree::Backlight("zeta", "raw"));
    tree_.addBacklight(BacklightTree::Backlight("alpha", "raw"));
    EXPECT_EQ(backlightInUse(), "alpha");
}

TEST_F(BacklightStandInTreeTest, DisplayMatchedByEdidWhateverItsConnectorName) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(200).withBrightness(50));
    BacklightBrightness backend = backendFor({{kPanelId, panelEdid_, "DP-7"}});
    EXPECT_EQ(backend.get(kPanelId), 0.25f);
}

TEST_F(BacklightStandInTreeTest, DisplayWithAnotherEdidNotControlled) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({{kPanelId, edidOf(0x1234, 9), "eDP-1"}});
    EXPECT_EQ(backend.get(kPanelId), std::nullopt);
    EXPECT_FALSE(backend.set(kPanelId, 1.0f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "50");
}

TEST_F(BacklightStandInTreeTest, ExternalConnectorWithTheDisplaysEdidNotControlled) {
    const std::vector<std::uint8_t> monitorEdid = edidOf(0x7777, 3);
    tree_.addConnector("card0", "DP-1", monitorEdid);
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({panelDisplay(), {7, monitorEdid, "DP-1"}});
    EXPECT_EQ(backend.get(7), std::nullopt);
    EXPECT_FALSE(backend.set(7, 1.0f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "50");
    EXPECT_EQ(backend.get(kPanelId), 0.5f);
}

TEST_F(BacklightStandInTreeTest, DisconnectedPanelNotControlled) {
    tree_.addConnector("card0", "eDP-2", edidOf(0x2222, 2), "disconnected");
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({{5, edidOf(0x2222, 2), "eDP-2"}});
    EXPECT_EQ(backend.get(5), std::nullopt);
    EXPECT_FALSE(backend.set(5, 1.0f));
}

TEST_F(BacklightStandInTreeTest, PanelWithoutEdidFileNotControlled) {
    tree_.addConnector("card0", "eDP-2", std::nullopt);
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({{5, edidOf(0x2222, 2), "eDP-2"}, {6, {}, "eDP-2"}});
    EXPECT_EQ(backend.get(5), std::nullopt);
    EXPECT_EQ(backend.get(6), std::nullopt);
    EXPECT_FALSE(backend.set(6, 1.0f));
}

TEST_F(BacklightStandInTreeTest, EdidComparedOnItsBaseBlock) {
    // The connector carries an extension block that the window system did not pass on.
    const std::vector<std::uint8_t> fullEdid = edidOf(0x2222, 2, 1);
    tree_.addConnector("card0", "eDP-2", fullEdid);
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({{5, {fullEdid.begin(), fullEdid.begin() + 128}, "eDP-2"}});
    EXPECT_EQ(backend.get(5), 0.5f);
}

TEST_F(BacklightStandInTreeTest, IdenticalPanelsToldApartByConnector) {
    // Two identical panels on two cards, each with the raw backlight of its own card.
    const std::vector<std::uint8_t> twinEdid = edidOf(0x3333, 0);
    tree_.addCard("card1", "0000:01:00.0");
    const std::filesystem::path first = tree_.addConnector("card0", "eDP-2", twinEdid);
    const std::filesystem::path second = tree_.addConnector("card1", "eDP-3", twinEdid);
    tree_.addBacklight(BacklightTree::Backlight("alpha", "raw").withBrightness(10).withDevice(first));
    tree_.addBacklight(BacklightTree::Backlight("zeta", "raw").withBrightness(90).withDevice(second));
    BacklightBrightness backend = backendFor({{5, twinEdid, "eDP-3"}, {6, twinEdid, "eDP-2"}});
    EXPECT_EQ(backend.get(5), 0.9f);
    EXPECT_EQ(backend.get(6), 0.1f);
}

TEST_F(BacklightStandInTreeTest, IdenticalPanelsOnAnUnknownConnectorNotControlled) {
    const std::vector<std::uint8_t> twinEdid = edidOf(0x3333, 0);
    tree_.addConnector("card0", "eDP-2", twinEdid);
    tree_.addConnector("card0", "eDP-3", twinEdid);
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendFor({{5, twinEdid, "HDMI-1"}});
    EXPECT_EQ(backend.get(5), std::nullopt);
}

TEST_F(BacklightStandInTreeTest, DisplaysNoLongerAttachedAreForgotten) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    BacklightBrightness backend = backendForPanel();
    ASSERT_EQ(backend.get(kPanelId), 0.5f);
    backend.updateDisplays({});
    EXPECT_EQ(backend.get(kPanelId), std::nullopt);
    EXPECT_FALSE(backend.set(kPanelId, 1.0f));
}

TEST_F(BacklightStandInTreeTest, GetIsActualBrightnessOverMaximum) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(400).withBrightness(300).withActual(100));
    EXPECT_EQ(backendForPanel().get(kPanelId), 0.25f);
}

TEST_F(BacklightStandInTreeTest, GetIsBrightnessOverMaximumWithoutActualBrightness) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(400).withBrightness(300));
    EXPECT_EQ(backendForPanel().get(kPanelId), 0.75f);
}

TEST_F(BacklightStandInTreeTest, MissingMaximumGivesNoLevel) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    std::filesystem::remove(tree_.backlightFolder("intel_backlight") / "max_brightness");
    BacklightBrightness backend = backendForPanel();
    EXPECT_EQ(backend.get(kPanelId), std::nullopt);
    EXPECT_FALSE(backend.set(kPanelId, 1.0f));
}

TEST_F(BacklightStandInTreeTest, ZeroMaximumGivesNoLevel) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(0).withBrightness(0));
    BacklightBrightness backend = backendForPanel();
    EXPECT_EQ(backend.get(kPanelId), std::nullopt);
    EXPECT_FALSE(backend.set(kPanelId, 1.0f));
}

TEST_F(BacklightStandInTreeTest, UnreadableBrightnessGivesNoLevel) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw"));
    testing::writeFile(tree_.backlightFolder("intel_backlight") / "brightness", "bright\n");
    EXPECT_EQ(backendForPanel().get(kPanelId), std::nullopt);
}

TEST_F(BacklightStandInTreeTest, SetWritesLevelTimesMaximumRounded) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(937));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 0.5f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "469");  // 468.5
    ASSERT_TRUE(backend.set(kPanelId, 0.3f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "281");  // 281.1
}

TEST_F(BacklightStandInTreeTest, GetAfterSetGivesTheNewLevel) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(1000));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 0.625f));
    EXPECT_EQ(backend.get(kPanelId), 0.625f);
}

TEST_F(BacklightStandInTreeTest, RawBacklightNeverWrittenZero) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(1000));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 0.0f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "1");
    ASSERT_TRUE(backend.set(kPanelId, 0.0004f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "1");
}

TEST_F(BacklightStandInTreeTest, FirmwareBacklightWrittenZero) {
    tree_.addBacklight(BacklightTree::Backlight("acpi_video0", "firmware").withMaximum(15));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 0.0f));
    EXPECT_EQ(tree_.brightnessOf("acpi_video0"), "0");
}

TEST_F(BacklightStandInTreeTest, LevelsOutsideTheRangeClamped) {
    tree_.addBacklight(BacklightTree::Backlight("acpi_video0", "firmware").withMaximum(15));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, 1.5f));
    EXPECT_EQ(tree_.brightnessOf("acpi_video0"), "15");
    ASSERT_TRUE(backend.set(kPanelId, -0.5f));
    EXPECT_EQ(tree_.brightnessOf("acpi_video0"), "0");
    ASSERT_TRUE(backend.set(kPanelId, std::numeric_limits<float>::infinity()));
    EXPECT_EQ(tree_.brightnessOf("acpi_video0"), "15");
}

TEST_F(BacklightStandInTreeTest, RawBacklightClampedAboveZero) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(1000));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, -3.0f));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "1");
}

TEST_F(BacklightStandInTreeTest, NanLevelWrittenAsTheDimmestLitLevel) {
    tree_.addBacklight(BacklightTree::Backlight("intel_backlight", "raw").withMaximum(1000));
    tree_.addBacklight(BacklightTree::Backlight("acpi_video0", "firmware").withMaximum(15));
    BacklightBrightness backend = backendForPanel();
    ASSERT_TRUE(backend.set(kPanelId, std::nanf("")));
    EXPECT_EQ(tree_.brightnessOf("acpi_video0"), "0");
    std::filesystem::remove_all(tree_.backlightFolder("acpi_video0"));
    backend.updateDisplays({panelDisplay()});
    ASSERT_TRUE(backend.set(kPanelId, std::nanf("")));
    EXPECT_EQ(tree_.brightnessOf("intel_backlight"), "1");
}

}  // namespace
}  // namespace vantle
