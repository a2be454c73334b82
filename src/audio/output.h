#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/audio_hal.h"
#include "services/levels.h"

namespace vantle {

// The address triple {selector, scope, element}; the scope defaults to output.
constexpr PropertyAddress address(std::uint32_t selector, std::uint32_t scope, std::uint32_t element) {
    return PropertyAddress{selector, scope, element};
}
constexpr PropertyAddress address(std::uint32_t selector, std::uint32_t element) {
    return PropertyAddress{selector, audio::kScopeOutput, element};
}

// Reads a property whose data is one value of T's size, starting from initial. Empty when the
// read fails.
template <typename T>
std::optional<T> scalar(AudioHal& hal, std::uint32_t object, const PropertyAddress& where, T initial) {
    T value = initial;
    std::uint32_t size = sizeof(T);
    if (hal.getData(object, where, size, &value) != AudioHal::kSuccess) {
        return std::nullopt;
    }
    return value;
}

// A property whose data is a list of 32-bit ids (devices, sub-devices); empty when it cannot be
// read or holds none.
std::vector<std::uint32_t> idList(AudioHal& hal, std::uint32_t object, const PropertyAddress& where);

// A text property at {selector, global, main element}; the empty string when it cannot be read.
std::string stringProperty(AudioHal& hal, std::uint32_t object, std::uint32_t selector);

// One device that can play sound.
struct Output {
    std::uint32_t id = 0;
    // Persistent unique id: the key of what we remember about the device across runs.
    std::string uid;
    // As the hardware names it; empty when it names none.
    std::string name;
    // The volume elements, ascending: exactly {0} when the main element has a usable volume,
    // else the usable channels, possibly none.
    std::vector<std::uint32_t> elements;

    bool operator==(const Output&) const = default;

    // The current volume of each element, in order. An element whose read fails is left out,
    // so the result can be shorter than elements; callers compare the counts.
    std::vector<float> levels(AudioHal& hal) const;

    // Sets each element to the level at the same position, clamped to 0..1 (NaN gives 0). A
    // failed write does not stop the others. False when any write failed, or when the counts
    // differ or are zero, in which case nothing is written.
    bool write(AudioHal& hal, const std::vector<float>& newLevels) const;
};

// New levels for one output, one per element.
struct LevelChange {
    const Output* output = nullptr;
    std::vector<float> levels;
};

// Writes every change as Output::write does, all in one batch, so that a command reaching
// several devices waits for the hardware once. The result holds, at each change's position,
// whether all of its writes succeeded.
std::vector<bool> writeLevels(AudioHal& hal, const std::vector<LevelChange>& changes);

// Writes the changes in their order as Output::write does, each change a step of
// AudioHal::setDataInSequence: after a change with a failed write, no later change is written.
// The result holds whether each change carried out succeeded, so it is shorter than changes
// when one failed before the last.
std::vector<bool> writeLevelsInSequence(AudioHal& hal, const std::vector<LevelChange>& changes);

// Every device that can play sound, in the hardware's order; empty when the list cannot be read.
std::vector<Output> outputs(AudioHal& hal);

// The device with this id as outputs() describes it; empty when it cannot play sound (it has no
// output streams, or does not exist).
std::optional<Output> outputWithId(AudioHal& hal, std::uint32_t id);

}  // namespace vantle
