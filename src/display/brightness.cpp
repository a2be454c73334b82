#include "display/brightness.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "services/settings_keys.h"

namespace vantle {
namespace {

bool hasArgument(const std::vector<std::string>& arguments, std::string_view wanted) {
    return std::find(arguments.begin(), arguments.end(), wanted) != arguments.end();
}

std::optional<std::uint32_t> displayNumber(const SystemScreen& screen) {
    if (!screen.number || *screen.number < 0 || *screen.number > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*screen.number);
}

// Two displays that report the same name become "Name (1)" and "Name (2)", in id order.
void makeNamesUnique(std::vector<DisplayEntry>& entries) {
    std::map<std::string, int> counters;
    std::map<std::string, int> occurrences;
    for (const DisplayEntry& entry : entries) {
        ++occurrences[entry.name];
    }
    for (DisplayEntry& entry : entries) {
        if (occurrences[entry.name] < 2) {
            continue;
        }
        const int number = ++counters[entry.name];
        entry.name += " (" + std::to_string(number) + ")";
    }
}

}  // namespace

Brightness::Brightness(NativeBrightnessFunctions native, ScreenSystem& screenSystem, ShadeFactory& shadeFactory,
                       UserDefaults& defaults, const std::vector<std::string>& arguments)
    : native_(std::move(native)),
      screenSystem_(screenSystem),
      shadeFactory_(shadeFactory),
      defaults_(defaults),
      previewSixDisplays_(hasArgument(arguments, "--preview-localization") &&
                          hasArgument(arguments, "--preview-six-displays")) {}

std::vector<DisplayEntry> Brightness::screens() {
    std::vector<DisplayEntry> entries;
    if (previewSixDisplays_) {
        // Pretend displays, so that the settings window can be looked at with six of them.
        for (std::uint32_t number = 1; number <= 6; ++number) {
            entries.push_back({9000 + number, "Preview Display " + std::to_string(number)});
        }
        return entries;
    }
    for (const SystemScreen& screen : screenSystem_.screens()) {
        const std::optional<std::uint32_t> id = displayNumber(screen);
        if (id && screenSystem_.isActive(*id)) {
            entries.push_back({*id, screen.name});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const DisplayEntry& left, const DisplayEntry& right) { return left.id < right.id; });
    makeNamesUnique(entries);
    return entries;
}

std::optional<float> Brightness::nativeRead(std::uint32_t display) {
    if (!native_.get) {
        return std::nullopt;
    }
    float level = 0;
    if (native_.get(display, &level) != 0 || !std::isfinite(level)) {
        return std::nullopt;
    }
    return std::clamp(level, 0.0f, 1.0f);
}

std::optional<float> Brightness::read(std::uint32_t display) {
    if (std::optional<float> level = nativeRead(display)) {
        return level;
    }
    if (!defaults_.boolean(settings::kSoftwareBrightness)) {
        return std::nullopt;
    }
    auto found = softwareLevels_.find(display);
    return found == softwareLevels_.end() ? 1.0f : found->second;
}

std::optional<SystemScreen> Brightness::systemScreen(std::uint32_t display) {
    for (const SystemScreen& screen : screenSystem_.screens()) {
        if (displayNumber(screen) == display) {
            return screen;
        }
    }
    return std::nullopt;
}

bool Brightness::write(std::uint32_t display, float level) {
    const float atLeastZero = level >= 0.0f ? level : 0.0f;  // NaN fails the comparison too
    const float clamped = std::min(atLeastZero, 1.0f);
    if (nativeRead(display)) {
        return native_.set && native_.set(display, clamped) == 0;
    }
    if (!defaults_.boolean(settings::kSoftwareBrightness)) {
        return false;
    }
    const std::optional<SystemScreen> screen = systemScreen(display);
    if (!screen) {
        return false;
    }
    auto found = shades_.find(display);
    if (found == shades_.end()) {
        std::unique_ptr<ShadePanel> made = shadeFactory_.makePanel(display, screen->frame);
        if (!made) {
            return false;
        }
        found = shades_.emplace(display, std::move(made)).first;
    }
    ShadePanel* panel = found->second.get();
    // Set up every time, so that a reused panel follows a changed screen frame.
    panel->setUp(screen->frame);
    panel->setAlpha(static_cast<double>((1.0f - clamped) * kDarkestShade));
    if (atLeastZero >= 1.0f) {
        panel->orderOut();
    } else {
        panel->orderFrontRegardless();
    }
    softwareLevels_[display] = clamped;
    return true;
}

void Brightness::clearShades() {
    for (auto& [display, panel] : shades_) {
        panel->orderOut();
    }
    shades_.clear();
    softwareLevels_.clear();
}

void Brightness::forget(std::uint32_t display) {
    if (auto found = shades_.find(display); found != shades_.end()) {
        found->second->orderOut();
        shades_.erase(found);
    }
    softwareLevels_.erase(display);
}

}  // namespace vantle
