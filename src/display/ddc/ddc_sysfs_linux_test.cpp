#include "display/ddc/ddc_sysfs_linux.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

namespace vantle::ddc {
namespace {

namespace fs = std::filesystem;

// A scratch folder laid out like the parts of /dev and /sys that are read.
class DdcSysfsTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "vantle-ddc-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        root_ = pattern;
    }
    void TearDown() override { fs::remove_all(root_); }

    void bus(int number, const fs::path& device) {
        fs::create_directories(root_ / "sys" / device);
        fs::create_directories(root_ / "sys/bus/i2c/devices");
        fs::create_directory_symlink(root_ / "sys" / device,
                                     root_ / "sys/bus/i2c/devices" / ("i2c-" + std::to_string(number)));
    }

    fs::path root_;
};

TEST_F(DdcSysfsTest, I2cBusesAreDeviceNodesNamedI2c) {
    fs::create_directories(root_ / "dev");
    std::ofstream(root_ / "dev/tty0").put('x');
    EXPECT_FALSE(hasI2cBuses(root_ / "dev"));
    std::ofstream(root_ / "dev/i2c-3").put('x');
    EXPECT_TRUE(hasI2cBuses(root_ / "dev"));
    EXPECT_FALSE(hasI2cBuses(root_ / "missing"));
}

TEST_F(DdcSysfsTest, DisplayPortAuxBusBelongsToItsConnector) {
    bus(5, "devices/pci0/drm/card0/card0-DP-1/i2c-5");
    EXPECT_EQ(drmConnectorOfI2cBus(5, root_ / "sys"), "card0-DP-1");
}

TEST_F(DdcSysfsTest, ConnectorsDdcLinkNamesItsBus) {
    bus(7, "devices/pci0/i2c-7");
    bus(8, "devices/pci0/i2c-8");
    fs::create_directories(root_ / "sys/class/drm/card1-HDMI-A-1");
    fs::create_directories(root_ / "sys/class/drm/card1-HDMI-A-2");
    fs::create_directory_symlink(root_ / "sys/devices/pci0/i2c-8", root_ / "sys/class/drm/card1-HDMI-A-1/ddc");
    fs::create_directory_symlink(root_ / "sys/devices/pci0/i2c-7", root_ / "sys/class/drm/card1-HDMI-A-2/ddc");
    EXPECT_EQ(drmConnectorOfI2cBus(7, root_ / "sys"), "card1-HDMI-A-2");
    EXPECT_EQ(drmConnectorOfI2cBus(8, root_ / "sys"), "card1-HDMI-A-1");
}

TEST_F(DdcSysfsTest, BusOfNoConnectorHasNoName) {
    bus(2, "devices/platform/i2c-2");
    EXPECT_EQ(drmConnectorOfI2cBus(2, root_ / "sys"), "");
    EXPECT_EQ(drmConnectorOfI2cBus(9, root_ / "sys"), "");
}

}  // namespace
}  // namespace vantle::ddc
