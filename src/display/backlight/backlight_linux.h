#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "display/backlight/panel_matching_linux.h"
#include "display/native_display_control.h"

namespace vantle {

// The brightness of built-in panels through the kernel's backlight class. A display is controlled
// only when its EDID is that of a connected eDP, LVDS or DSI connector; its level is the
// backlight's brightness over max_brightness. Writes go to the brightness attribute when we may
// write it, else through logind, which lets the active session's user set it.
// Main thread only; a call takes a few sysfs accesses, or at most about a second when logind has
// to be asked and does not answer.
class BacklightBrightness final : public NativeDisplayControl {
public:
    // root: the folder holding sys/class/backlight and sys/class/drm; "/" on a real system.
    explicit BacklightBrightness(std::filesystem::path root = "/");

    void updateDisplays(const std::vector<DisplayIdentity>& displays) override;
    std::optional<float> get(std::uint32_t displayId) override;
    bool set(std::uint32_t displayId, float level) override;

    // How long a write through logind may take before it counts as refused.
    static constexpr std::chrono::milliseconds kLogindTimeout{1000};

private:
    std::filesystem::path folderOf(const backlight::BacklightDevice& backlight) const;

    std::filesystem::path root_;
    std::map<std::uint32_t, backlight::BacklightDevice> controlled_;
};

}  // namespace vantle
