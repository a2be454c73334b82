#include "display/ddc/ddc_sysfs_linux.h"

#include <string_view>
#include <system_error>

namespace vantle::ddc {
namespace {

bool isConnectorName(std::string_view name) {
    // DRM connectors are named card<N>-<connector>, such as card0-DP-1 or card1-HDMI-A-2.
    if (!name.starts_with("card")) {
        return false;
    }
    const auto dash = name.find('-');
    return dash != std::string_view::npos && dash > 4 && dash + 1 < name.size();
}

}  // namespace

bool hasI2cBuses(const std::filesystem::path& devDir) {
    std::error_code error;
    for (std::filesystem::directory_iterator it(devDir, error), end; !error && it != end;
         it.increment(error)) {
        if (it->path().filename().string().starts_with("i2c-")) {
            return true;
        }
    }
    return false;
}

std::string drmConnectorOfI2cBus(int busNumber, const std::filesystem::path& sysfs) {
    std::error_code error;
    const auto bus = std::filesystem::canonical(
        sysfs / "bus/i2c/devices" / ("i2c-" + std::to_string(busNumber)), error);
    if (error) {
        return {};
    }
    const std::string parent = bus.parent_path().filename().string();
    if (isConnectorName(parent)) {
        return parent;
    }
    for (std::filesystem::directory_iterator it(sysfs / "class/drm", error), end; !error && it != end;
         it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (!isConnectorName(name)) {
            continue;
        }
        std::error_code linkError;
        const auto ddc = std::filesystem::canonical(it->path() / "ddc", linkError);
        if (!linkError && ddc == bus) {
            return name;
        }
    }
    return {};
}

}  // namespace vantle::ddc
