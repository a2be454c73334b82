#include "app/display_checks.h"

#include <cmath>

#include "localization/describe.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

constexpr float kRoundTripTolerance = 0.01f;

// The level the round trip puts back: the native one, else the remembered software level.
std::optional<float> levelToTest(Brightness& brightness, const UserDefaults& defaults, std::uint32_t display) {
    if (std::optional<float> native = brightness.nativeRead(display)) {
        return native;
    }
    if (!defaults.boolean(settings::kSoftwareBrightness)) {
        return std::nullopt;
    }
    auto found = brightness.softwareLevels().find(display);
    return found == brightness.softwareLevels().end() ? 1.0f : found->second;
}

}  // namespace

std::vector<std::string> diagnoseDisplayLines(Brightness& brightness) {
    std::vector<std::string> lines;
    for (const DisplayEntry& display : brightness.screens()) {
        const std::optional<float> level = brightness.read(display.id);
        lines.push_back("DISPLAY " + std::to_string(display.id) + " " + display.name + " brightness=" +
                        (level ? "Optional(" + shortestDecimal(*level) + ")" : std::string("nil")));
    }
    return lines;
}

RoundTripResult verifyBrightnessRoundTrip(Brightness& brightness, const UserDefaults& defaults) {
    RoundTripResult result;
    for (const DisplayEntry& display : brightness.screens()) {
        const std::optional<float> level = levelToTest(brightness, defaults, display.id);
        if (!level) {
            result.passed = false;
            continue;
        }
        bool unchanged = false;
        if (brightness.write(display.id, *level)) {
            const float readBack = brightness.read(display.id).value_or(-1.0f);
            unchanged = std::fabs(readBack - *level) < kRoundTripTolerance;
        }
        result.lines.push_back("BRIGHTNESS write/read unchanged " + std::to_string(display.id) + ": " +
                               (unchanged ? "true" : "false"));
        result.passed = result.passed && unchanged;
    }
    return result;
}

}  // namespace vantle
