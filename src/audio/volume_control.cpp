#include "audio/volume_control.h"

#include <algorithm>

#include "audio/control_plan.h"
#include "localization/localization.h"

namespace vantle {
std::vector<std::uint32_t> VolumeControl::members(std::uint32_t device) {
    return idList(hal_, device, address(audio::kActiveSubDevices, audio::kScopeGlobal, audio::kMainElement));
}

std::vector<Output> VolumeControl::aggregates() {
    AudioSnapshotScope snapshot(hal_);
    std::vector<Output> result;
    for (Output& output : outputs(hal_)) {
        if (!members(output.id).empty()) {
            result.push_back(std::move(output));
        }
    }
    return result;
}

std::vector<Output> VolumeControl::devices() {
    AudioSnapshotScope snapshot(hal_);
    const std::uint32_t defaultDevice =
        scalar<std::uint32_t>(hal_, audio::kSystemObject,
                              address(audio::kDefaultOutputDevice, audio::kScopeGlobal, audio::kMainElement), 0)
            .value_or(0);
    const std::vector<std::uint32_t> leaves =
        ControlPlan::audioLeaves(defaultDevice, [this](std::uint32_t id) { return members(id); });
    if (leaves.size() == 1 && leaves.front() == defaultDevice) {
        // A plain default output is its own leaf and is always among the hardware's devices:
        // one device has no order to take from the list, so the list is not read. A volume key
        // then asks the hardware about that device alone before it writes.
        std::optional<Output> output = outputWithId(hal_, defaultDevice);
        return output ? std::vector<Output>{std::move(*output)} : std::vector<Output>{};
    }
    std::vector<Output> kept;
    for (Output& output : outputs(hal_)) {
        if (std::binary_search(leaves.begin(), leaves.end(), output.id)) {
            kept.push_back(std::move(output));
        }
    }
    // A leaf that is not an output device (no output streams, or gone) means the command would
    // reach only part of what the user hears: act on none.
    if (kept.size() != leaves.size()) {
        return {};
    }
    return kept;
}

std::vector<Output> VolumeControl::readableDevices() {
    std::vector<Output> leaves = devices();
    for (const Output& device : leaves) {
        if (device.elements.empty() || device.levels(hal_).size() != device.elements.size()) {
            return {};
        }
    }
    return leaves;
}

void VolumeControl::applyVolume(float level) {
    AudioSnapshotScope snapshot(hal_);
    const std::vector<Output> leaves = readableDevices();
    if (leaves.empty()) {
        show(L("s090"));
        return;
    }
    std::vector<std::vector<float>> before;
    before.reserve(leaves.size());
    for (const Output& device : leaves) {
        before.push_back(device.levels(hal_));
    }
    // One device after another (its elements together): a device that refuses stops the
    // command before the next device hears the new level.
    std::vector<LevelChange> changes;
    changes.reserve(leaves.size());
    for (const Output& device : leaves) {
        changes.push_back({&device, std::vector<float>(device.elements.size(), level)});
    }
    const std::vector<bool> written = writeLevelsInSequence(hal_, changes);
    if (written.size() != leaves.size() || std::find(written.begin(), written.end(), false) != written.end()) {
        // Undo what was written so that the devices never play at different levels. Every
        // device whose snapshot is complete is written back, including the failed one, whose
        // other elements may have taken the new level.
        std::vector<LevelChange> rollback;
        for (std::size_t index = 0; index < leaves.size(); ++index) {
            if (!before[index].empty() && before[index].size() == leaves[index].elements.size()) {
                rollback.push_back({&leaves[index], before[index]});
            }
        }
        writeLevels(hal_, rollback);
        show(L("s091"));
        refresh_();
        return;
    }
    // A new level ends the mute memory of the devices it reached: a later unmute must not
    // bring back their old level.
    SavedLevels remembered = saved();
    std::size_t forgotten = 0;
    for (const Output& device : leaves) {
        forgotten += remembered.erase(device.uid);
    }
    if (forgotten > 0) {
        setSaved(remembered);
    }
    show(L("s092", leaves.size()));
    refresh_();
}

void VolumeControl::setVolume(double sliderValue) {
    applyVolume(static_cast<float>(sliderValue / 100.0));
}

void VolumeControl::quickVolumeChanged(double sliderValue) {
    applyVolume(static_cast<float>(sliderValue / 100.0));
}

void VolumeControl::toggleMute() {
    if (muted()) {
        unmute();
        return;
    }
    AudioSnapshotScope snapshot(hal_);
    const std::vector<Output> leaves = readableDevices();
    if (leaves.empty()) {
        show(L("s093"));
        return;
    }
    SavedLevels remembered;
    for (const Output& device : leaves) {
        remembered[device.uid] = device.levels(hal_);
    }
    // Stored before the first write: if we die half-way, the levels are still known.
    setSaved(remembered);
    // Every device is written whatever happens to the others, so they go out together.
    std::vector<LevelChange> silence;
    for (const Output& device : leaves) {
        silence.push_back({&device, std::vector<float>(device.elements.size(), 0.0f)});
    }
    const std::vector<bool> written = writeLevels(hal_, silence);
    const bool failed = std::find(written.begin(), written.end(), false) != written.end();
    if (failed) {
        unmute();
        show(L("s094"));
    } else {
        show(L("s095"));
    }
    refresh_();
}

void VolumeControl::unmute() {
    AudioSnapshotScope snapshot(hal_);
    SavedLevels remembered = saved();
    // All outputs, not only the current leaves: the default output may have changed since.
    const std::vector<Output> all = outputs(hal_);
    std::vector<LevelChange> restore;
    for (const Output& output : all) {
        auto entry = remembered.find(output.uid);
        if (entry != remembered.end() && !entry->second.empty() && entry->second.size() == output.elements.size()) {
            restore.push_back({&output, entry->second});
        }
    }
    const std::vector<bool> written = writeLevels(hal_, restore);
    for (std::size_t index = 0; index < restore.size(); ++index) {
        if (written[index]) {
            remembered.erase(restore[index].output->uid);
        }
    }
    setSaved(remembered);
    show(L(remembered.empty() ? "s096" : "s097"));
    refresh_();
}

void VolumeControl::unmuteIfMuted() {
    if (muted()) {
        unmute();
    }
}

bool VolumeControl::muted() const {
    return !saved().empty();
}

SavedLevels VolumeControl::saved() const {
    return loadSavedLevels(defaults_);
}

void VolumeControl::setSaved(const SavedLevels& levels) {
    storeSavedLevels(defaults_, levels);
}

void VolumeControl::show(const std::string& text) {
    messages_.report(text);
}

}  // namespace vantle
