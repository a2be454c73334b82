#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "display/native_brightness.h"
#include "display/screen_system.h"
#include "display/shade.h"
#include "services/user_defaults.h"

namespace vantle {

// A display to control: its id and the name shown to the user.
struct DisplayEntry {
    std::uint32_t id = 0;
    std::string name;
    bool operator==(const DisplayEntry&) const = default;
};

// Reads and sets the brightness of each display: natively where the display answers, else, when
// the user turned software dimming on, with a shade laid over the screen. Native control is
// asked afresh at every call, so a display that starts or stops answering is followed at once.
// Main thread only.
class Brightness {
public:
    Brightness(NativeBrightnessFunctions native, ScreenSystem& screenSystem, ShadeFactory& shadeFactory,
               UserDefaults& defaults, const std::vector<std::string>& arguments);

    // The displays to control, sorted by id, with names made unique by " (1)", " (2)".
    std::vector<DisplayEntry> screens();
    // The native level, clamped to 0..1; empty when the display does not answer.
    std::optional<float> nativeRead(std::uint32_t display);
    // The level to show: native, else the software level (1.0 when never set) when software
    // dimming is on, else empty.
    std::optional<float> read(std::uint32_t display);
    // Sets the level, natively when the display answers, else with a shade when software
    // dimming is on. True when it was set.
    bool write(std::uint32_t display, float level);
    // Takes every shade off and forgets every software level.
    void clearShades();

    // Drops the shade and software level of a display that is gone.
    void forget(std::uint32_t display);
    // Puts back the dimming of displays dimmed in software where another program undid it;
    // for the periodic refresh, not for every command.
    void keepDimming() { shadeFactory_.keepDimming(); }

    const std::map<std::uint32_t, std::unique_ptr<ShadePanel>>& shades() const { return shades_; }
    const std::map<std::uint32_t, float>& softwareLevels() const { return softwareLevels_; }
    bool hasNativeGetter() const { return static_cast<bool>(native_.get); }
    // For commands over several displays: see ScreenSnapshotScope.
    ScreenSystem& screenSystem() { return screenSystem_; }

private:
    std::optional<SystemScreen> systemScreen(std::uint32_t display);

    NativeBrightnessFunctions native_;
    ScreenSystem& screenSystem_;
    ShadeFactory& shadeFactory_;
    UserDefaults& defaults_;
    bool previewSixDisplays_ = false;
    std::map<std::uint32_t, std::unique_ptr<ShadePanel>> shades_;
    std::map<std::uint32_t, float> softwareLevels_;
};

// The darkest a shade gets: a display is never dimmed to black.
inline constexpr float kDarkestShade = 0.85f;

}  // namespace vantle
