#include "audio/output.h"

#include <algorithm>

namespace vantle {
namespace {

// Channels past this one are never looked at; the main element is 0.
constexpr std::uint32_t kLastElement = 32;

bool isUsableVolumeElement(AudioHal& hal, std::uint32_t device, std::uint32_t element) {
    const PropertyAddress volume = address(audio::kVolume, element);
    if (!hal.hasProperty(device, volume)) {
        return false;
    }
    bool settable = false;
    if (hal.isSettable(device, volume, settable) != AudioHal::kSuccess || !settable) {
        return false;
    }
    return scalar<float>(hal, device, volume, 0.0f).has_value();
}

std::vector<std::uint32_t> usableElements(AudioHal& hal, std::uint32_t device) {
    std::vector<std::uint32_t> elements;
    for (std::uint32_t element = 0; element <= kLastElement; ++element) {
        if (isUsableVolumeElement(hal, device, element)) {
            elements.push_back(element);
        }
    }
    if (!elements.empty() && elements.front() == audio::kMainElement) {
        return {audio::kMainElement};
    }
    return elements;
}

bool hasOutputStreams(AudioHal& hal, std::uint32_t device) {
    std::uint32_t size = 0;
    return hal.dataSize(device, address(audio::kStreams, audio::kMainElement), size) == AudioHal::kSuccess &&
           size > 0;
}

}  // namespace

std::vector<std::uint32_t> idList(AudioHal& hal, std::uint32_t object, const PropertyAddress& where) {
    std::uint32_t size = 0;
    if (hal.dataSize(object, where, size) != AudioHal::kSuccess || size < sizeof(std::uint32_t)) {
        return {};
    }
    std::vector<std::uint32_t> ids(size / sizeof(std::uint32_t), 0);
    std::uint32_t readSize = static_cast<std::uint32_t>(ids.size() * sizeof(std::uint32_t));
    if (hal.getData(object, where, readSize, ids.data()) != AudioHal::kSuccess) {
        return {};
    }
    ids.resize(std::min<std::size_t>(ids.size(), readSize / sizeof(std::uint32_t)));
    return ids;
}

std::string stringProperty(AudioHal& hal, std::uint32_t object, std::uint32_t selector) {
    const PropertyAddress where = address(selector, audio::kScopeGlobal, audio::kMainElement);
    std::uint32_t size = 0;
    if (hal.dataSize(object, where, size) != AudioHal::kSuccess || size == 0) {
        return {};
    }
    std::string text(size, '\0');
    if (hal.getData(object, where, size, text.data()) != AudioHal::kSuccess) {
        return {};
    }
    text.resize(std::min<std::size_t>(size, text.size()));
    return text;
}

std::vector<float> Output::levels(AudioHal& hal) const {
    AudioSnapshotScope snapshot(hal);
    std::vector<float> result;
    result.reserve(elements.size());
    for (std::uint32_t element : elements) {
        if (std::optional<float> level = scalar<float>(hal, id, address(audio::kVolume, element), 0.0f)) {
            result.push_back(*level);
        }
    }
    return result;
}

bool Output::write(AudioHal& hal, const std::vector<float>& newLevels) const {
    return writeLevels(hal, {LevelChange{this, newLevels}}).front();
}

namespace {

// The writes of the changes, one step per change that can be written at all; each write's step
// and position are kept, so that statuses find their way back to the changes.
struct StagedChanges {
    std::vector<std::vector<AudioHal::Write>> steps;
    std::vector<std::size_t> owners;
    // The written values: the writes point into them, so they are reserved in full and never move.
    std::vector<float> clamped;
};

StagedChanges stage(const std::vector<LevelChange>& changes, std::vector<bool>& writable) {
    StagedChanges staged;
    std::size_t total = 0;
    for (const LevelChange& change : changes) {
        total += change.levels.size();
    }
    staged.clamped.reserve(total);
    writable.assign(changes.size(), false);
    for (std::size_t position = 0; position < changes.size(); ++position) {
        const Output& output = *changes[position].output;
        const std::vector<float>& levels = changes[position].levels;
        if (levels.size() != output.elements.size() || levels.empty()) {
            continue;
        }
        writable[position] = true;
        std::vector<AudioHal::Write>& step = staged.steps.emplace_back();
        for (std::size_t index = 0; index < levels.size(); ++index) {
            staged.clamped.push_back(clampLevel(levels[index]));
            step.push_back({output.id, address(audio::kVolume, output.elements[index]), sizeof(float),
                            &staged.clamped.back()});
        }
        staged.owners.push_back(position);
    }
    return staged;
}

bool allSucceeded(const std::vector<AudioHal::Status>& statuses, std::size_t expected) {
    return statuses.size() == expected &&
           std::all_of(statuses.begin(), statuses.end(), [](AudioHal::Status status) { return status == AudioHal::kSuccess; });
}

}  // namespace

std::vector<bool> writeLevels(AudioHal& hal, const std::vector<LevelChange>& changes) {
    std::vector<bool> written;
    const StagedChanges staged = stage(changes, written);
    std::vector<AudioHal::Write> writes;
    std::vector<std::size_t> owner;
    for (std::size_t step = 0; step < staged.steps.size(); ++step) {
        for (const AudioHal::Write& write : staged.steps[step]) {
            writes.push_back(write);
            owner.push_back(staged.owners[step]);
        }
    }
    if (writes.empty()) {
        return written;
    }
    const std::vector<AudioHal::Status> statuses = hal.setDataBatch(writes);
    for (std::size_t index = 0; index < writes.size(); ++index) {
        if (index >= statuses.size() || statuses[index] != AudioHal::kSuccess) {
            written[owner[index]] = false;
        }
    }
    return written;
}

std::vector<bool> writeLevelsInSequence(AudioHal& hal, const std::vector<LevelChange>& changes) {
    std::vector<bool> writable;
    const StagedChanges staged = stage(changes, writable);
    // A change that cannot be written at all is a failed step: it ends the sequence there.
    std::size_t writableRun = 0;
    while (writableRun < changes.size() && writable[writableRun]) {
        ++writableRun;
    }
    std::vector<std::vector<AudioHal::Write>> steps(staged.steps.begin(),
                                                    staged.steps.begin() + static_cast<std::ptrdiff_t>(writableRun));
    const std::vector<std::vector<AudioHal::Status>> results =
        steps.empty() ? std::vector<std::vector<AudioHal::Status>>{} : hal.setDataInSequence(steps);
    std::vector<bool> written;
    for (std::size_t step = 0; step < results.size() && step < steps.size(); ++step) {
        written.push_back(allSucceeded(results[step], steps[step].size()));
    }
    if (written.size() == writableRun && writableRun < changes.size()) {
        written.push_back(false);
    }
    return written;
}

std::vector<Output> outputs(AudioHal& hal) {
    // Dozens of probes per device: one reading of the hardware answers them all.
    AudioSnapshotScope snapshot(hal);
    std::vector<Output> result;
    for (std::uint32_t id :
         idList(hal, audio::kSystemObject, address(audio::kDevices, audio::kScopeGlobal, audio::kMainElement))) {
        if (std::optional<Output> output = outputWithId(hal, id)) {
            result.push_back(std::move(*output));
        }
    }
    return result;
}

std::optional<Output> outputWithId(AudioHal& hal, std::uint32_t id) {
    AudioSnapshotScope snapshot(hal);
    std::string name = stringProperty(hal, id, audio::kName);
    if (!hasOutputStreams(hal, id)) {
        return std::nullopt;  // an input-only device
    }
    std::vector<std::uint32_t> elements = usableElements(hal, id);
    return Output{id, stringProperty(hal, id, audio::kUid), std::move(name), std::move(elements)};
}

}  // namespace vantle
