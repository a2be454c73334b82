#include "app/audio_checks.h"

#include <cmath>

#include "audio/output.h"
#include "localization/describe.h"
#include "localization/text_case.h"

namespace vantle {
namespace {

constexpr float kRoundTripTolerance = 0.005f;

bool isTestSpeaker(const Output& output) {
    return containsIgnoringCase(output.name, "Studio Display");
}

bool roundTripUnchanged(AudioHal& hal, const Output& output) {
    const std::vector<float> before = output.levels(hal);
    if (before.empty() || before.size() != output.elements.size()) {
        return false;
    }
    if (!output.write(hal, before)) {
        return false;
    }
    const std::vector<float> after = output.levels(hal);
    if (after.size() != before.size()) {
        return false;
    }
    for (std::size_t index = 0; index < before.size(); ++index) {
        if (!(std::fabs(after[index] - before[index]) < kRoundTripTolerance)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::string bracketedList(const std::vector<std::string>& items) {
    std::string text = "[";
    for (std::size_t index = 0; index < items.size(); ++index) {
        text += (index == 0 ? "" : ", ") + items[index];
    }
    return text + "]";
}

std::vector<std::string> diagnoseAudioLines(AudioHal& hal) {
    AudioSnapshotScope snapshot(hal);
    std::vector<std::string> lines;
    for (const Output& output : outputs(hal)) {
        std::vector<std::string> elements;
        for (std::uint32_t element : output.elements) {
            elements.push_back(std::to_string(element));
        }
        std::vector<std::string> levels;
        for (float level : output.levels(hal)) {
            levels.push_back(shortestDecimal(level));
        }
        lines.push_back("AUDIO id=" + std::to_string(output.id) + " name=" + output.name +
                        " volumeElements=" + bracketedList(elements) + " levels=" + bracketedList(levels));
    }
    const std::optional<std::uint32_t> defaultDevice = scalar<std::uint32_t>(
        hal, audio::kSystemObject, address(audio::kDefaultOutputDevice, audio::kScopeGlobal, audio::kMainElement), 0);
    if (defaultDevice) {
        lines.push_back("DEFAULT " + std::to_string(*defaultDevice) + " " +
                        stringProperty(hal, *defaultDevice, audio::kName));
    }
    return lines;
}

RoundTripResult verifyVolumeRoundTrip(AudioHal& hal) {
    RoundTripResult result;
    for (const Output& output : outputs(hal)) {
        if (!isTestSpeaker(output)) {
            continue;
        }
        const bool unchanged = roundTripUnchanged(hal, output);
        result.lines.push_back("VOLUME write/read unchanged " + std::to_string(output.id) + ": " +
                               (unchanged ? "true" : "false"));
        result.passed = result.passed && unchanged;
    }
    return result;
}

}  // namespace vantle
