#include "display/backlight/backlight_linux.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "display/backlight/backlight_logind_linux.h"
#include "display/backlight/backlight_sysfs_linux.h"

namespace vantle {

using backlight::BacklightDevice;
using backlight::BacklightType;

BacklightBrightness::BacklightBrightness(std::filesystem::path root) : root_(std::move(root)) {}

void BacklightBrightness::updateDisplays(const std::vector<DisplayIdentity>& displays) {
    controlled_.clear();
    const std::vector<backlight::PanelConnector> panels = backlight::readConnectedPanels(root_);
    if (panels.empty()) {
        return;
    }
    const std::vector<BacklightDevice> backlights = backlight::readBacklights(root_);
    for (const DisplayIdentity& display : displays) {
        const std::optional<backlight::PanelConnector> panel = backlight::panelShowing(display, panels);
        if (!panel) {
            continue;
        }
        if (std::optional<BacklightDevice> device = backlight::backlightFor(*panel, backlights)) {
            controlled_[display.displayId] = std::move(*device);
        }
    }
}

std::optional<float> BacklightBrightness::get(std::uint32_t displayId) {
    const auto found = controlled_.find(displayId);
    if (found == controlled_.end()) {
        return std::nullopt;
    }
    const std::filesystem::path folder = folderOf(found->second);
    const std::optional<std::uint32_t> maximum = backlight::readNumber(folder / "max_brightness");
    // actual_brightness is what the hardware shows; brightness is only what was last asked for,
    // which some drivers adjust. Not every driver has the former, and some fail to read it while
    // the panel is off.
    std::optional<std::uint32_t> current = backlight::readNumber(folder / "actual_brightness");
    if (!current) {
        current = backlight::readNumber(folder / "brightness");
    }
    if (!maximum || *maximum == 0 || !current) {
        return std::nullopt;
    }
    return std::min(1.0f, static_cast<float>(static_cast<double>(*current) / static_cast<double>(*maximum)));
}

bool BacklightBrightness::set(std::uint32_t displayId, float level) {
    const auto found = controlled_.find(displayId);
    if (found == controlled_.end()) {
        return false;
    }
    const BacklightDevice& device = found->second;
    const std::filesystem::path folder = folderOf(device);
    const std::optional<std::uint32_t> maximum = backlight::readNumber(folder / "max_brightness");
    if (!maximum || *maximum == 0) {
        return false;
    }
    // A level that is not a number asks for nothing sensible; the dimmest level is the answer
    // that keeps the panel lit.
    const float clamped = std::isnan(level) ? 0.0f : std::clamp(level, 0.0f, 1.0f);
    auto value = static_cast<std::uint32_t>(std::lround(static_cast<double>(clamped) * static_cast<double>(*maximum)));
    // On many panels a raw value of 0 switches the backlight off entirely, leaving a black screen
    // on which the user cannot find the way back up. Firmware and platform interfaces keep their
    // 0 visibly lit.
    if (device.type == BacklightType::Raw) {
        value = std::max<std::uint32_t>(value, 1);
    }
    switch (backlight::writeNumber(folder / "brightness", value)) {
    case backlight::WriteResult::Written:
        return true;
    case backlight::WriteResult::Refused:
        return false;
    case backlight::WriteResult::NotWritable:
        break;
    }
    return backlight::setBrightnessThroughLogind(device.name, value, kLogindTimeout);
}

std::filesystem::path BacklightBrightness::folderOf(const BacklightDevice& device) const {
    return root_ / "sys/class/backlight" / device.name;
}

}  // namespace vantle
