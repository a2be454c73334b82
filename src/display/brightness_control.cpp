#include "display/brightness_control.h"

#include <charconv>
#include <limits>
#include <set>
#include <string>

#include "display/brightness_plan.h"
#include "localization/localization.h"
#include "services/levels.h"
#include "services/settings_keys.h"

namespace vantle {
namespace {

std::optional<std::uint32_t> displayOfTag(std::int64_t tag) {
    if (tag < 0 || tag > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(tag);
}

// Whether a number in decimal text (as the decimal parse accepted it) lies below 1 in size,
// judged by the decimal exponent of its first significant digit; the exponent may be too large
// for any integer type, so it is read only as far as it matters.
bool isBelowOne(std::string_view number) {
    std::size_t index = !number.empty() && (number.front() == '+' || number.front() == '-') ? 1 : 0;
    std::int64_t leading = 0;  // the power of ten of the first significant digit
    bool significant = false;
    bool fraction = false;
    for (; index < number.size(); ++index) {
        const char c = number[index];
        if (c == '.') {
            fraction = true;
        } else if (c < '0' || c > '9') {
            break;
        } else if (!fraction) {
            leading += significant ? 1 : 0;
            significant = significant || c != '0';
        } else if (!significant) {
            --leading;
            significant = c != '0';
        }
    }
    if (!significant) {
        return true;
    }
    std::int64_t exponent = 0;
    if (index < number.size() && (number[index] == 'e' || number[index] == 'E')) {
        ++index;
        const bool negative = index < number.size() && number[index] == '-';
        index += index < number.size() && (number[index] == '-' || number[index] == '+') ? 1 : 0;
        for (; index < number.size() && exponent < 1'000'000'000; ++index) {
            exponent = exponent * 10 + (number[index] - '0');
        }
        exponent = negative ? -exponent : exponent;
    }
    return leading + exponent < 0;
}

}  // namespace

std::optional<float> parsePercentage(std::string_view text) {
    std::string normalized(text);
    for (char& c : normalized) {
        if (c == ',') {
            c = '.';
        }
    }
    // The decimal parse does not depend on the user's locale, and takes a leading plus sign
    // as people type it.
    std::string_view number = normalized;
    if (number.size() > 1 && number.front() == '+' && number[1] != '-' && number[1] != '+') {
        number.remove_prefix(1);
    }
    float value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number.empty() || end != number.data() + number.size()) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        // A number too small for a float reads as 0, as the usual decimal parse rounds it;
        // one too large stays rejected.
        if (!isBelowOne(number)) {
            return std::nullopt;
        }
        value = 0.0f;
    } else if (error != std::errc{}) {
        return std::nullopt;
    }
    if (!(value >= 0.0f && value <= 100.0f)) {
        return std::nullopt;
    }
    // "-0" is accepted as 0, and must not carry its sign into the level, where a later
    // percentage would show it as "-0".
    if (value == 0.0f) {
        return 0.0f;
    }
    return value / 100.0f;
}

void BrightnessControl::adjustBrightness(float delta) {
    ScreenSnapshotScope snapshot(brightness_.screenSystem());
    const std::vector<DisplayEntry> screens = brightness_.screens();
    if (screens.empty() || screens.size() > ControlPlan::limit) {
        show("s103");
        return;
    }
    std::vector<ControlPlan::DisplayLevel> levels;
    for (const DisplayEntry& screen : screens) {
        levels.emplace_back(screen.id, brightness_.read(screen.id));
    }
    const std::vector<ControlPlan::PlannedLevel> plan =
        ControlPlan::brightness(levels, defaults_.boolean(settings::kLinked), delta);
    if (plan.empty()) {
        show("s104");
        return;
    }
    bool allWritten = true;
    for (const auto& [display, level] : plan) {
        allWritten = brightness_.write(display, level) && allWritten;
    }
    show(allWritten && plan.size() == screens.size() ? "s105" : "s106");
    refresh_();
}

void BrightnessControl::setBrightness(std::int64_t tag, double sliderValue) {
    const std::optional<std::uint32_t> display = displayOfTag(tag);
    const bool written = display && brightness_.write(*display, static_cast<float>(sliderValue / 100.0));
    show(written ? "s101" : "s102");
    refresh_();
}

bool BrightnessControl::setBrightnessPercent(std::int64_t tag, std::string_view text) {
    const std::optional<float> level = parsePercentage(text);
    if (!level) {
        show("s098");
        refresh_();
        return false;
    }
    const std::optional<std::uint32_t> display = displayOfTag(tag);
    const bool written = display && brightness_.write(*display, *level);
    show(written ? "s099" : "s100");
    refresh_();
    return true;
}

void BrightnessControl::saveLinked(bool on) {
    defaults_.set(settings::kLinked, on);
}

void BrightnessControl::softwareChanged(bool on) {
    defaults_.set(settings::kSoftwareBrightness, on);
    // Whichever way it goes, every display starts again from full brightness.
    brightness_.clearShades();
    refresh_();
}

void BrightnessControl::screensChanged() {
    ScreenSnapshotScope snapshot(brightness_.screenSystem());
    std::set<std::uint32_t> current;
    for (const DisplayEntry& screen : brightness_.screens()) {
        current.insert(screen.id);
    }
    std::vector<std::uint32_t> gone;
    for (const auto& [display, panel] : brightness_.shades()) {
        if (current.count(display) == 0) {
            gone.push_back(display);
        }
    }
    for (std::uint32_t display : gone) {
        brightness_.forget(display);
    }
    const std::map<std::uint32_t, float> levels = brightness_.softwareLevels();
    for (const auto& [display, level] : levels) {
        brightness_.write(display, level);
    }
}

void BrightnessControl::openDisplaySettings() {
    workspace_.openSettings(SettingsPlace::Displays);
}

void BrightnessControl::openMIDI() {
    workspace_.openSettings(SettingsPlace::Sound);
}

void BrightnessControl::show(const char* key) {
    messages_.report(L(key));
}

}  // namespace vantle
