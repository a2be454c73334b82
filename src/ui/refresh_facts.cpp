#include "ui/refresh_facts.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vantle {

RefreshFacts::Audio readAudioFacts(VolumeControl& volume, AudioHal& hal) {
    // One reading of the sound server for the whole gathering: a refresh runs every 2 s.
    AudioSnapshotScope snapshot(hal);
    RefreshFacts::Audio audio;
    for (const Output& device : volume.devices()) {
        audio.leaves.push_back({device.elements.size(), device.levels(hal)});
    }
    audio.muted = volume.muted();
    return audio;
}

RefreshFacts::Displays readDisplayFacts(Brightness& brightness, const RefreshFacts::Controls& controls) {
    ScreenSnapshotScope snapshot(brightness.screenSystem());
    RefreshFacts::Displays displays;
    for (const DisplayEntry& entry : brightness.screens()) {
        displays.screens.push_back({entry.id, entry.name, brightness.read(entry.id), brightness.nativeRead(entry.id)});
    }
    const auto listed = [&displays](std::uint32_t id) {
        return std::any_of(displays.screens.begin(), displays.screens.end(),
                           [id](const RefreshFacts::Screen& screen) { return screen.id == id; });
    };
    // A display unplugged since its controls were built keeps its software level until the
    // screen change is handled, so it is still asked rather than assumed unreadable.
    for (const auto* ids : {&controls.quickDisplays, &controls.displaySliders}) {
        for (std::uint32_t id : *ids) {
            if (!listed(id) && displays.unlisted.count(id) == 0) {
                displays.unlisted[id] = {brightness.read(id), brightness.nativeRead(id)};
            }
        }
    }
    return displays;
}

void gatherHardwareFacts(RefreshFacts& facts, VolumeControl& volume, AudioHal& hal, Brightness& brightness) {
    facts.audio = readAudioFacts(volume, hal);
    facts.displays = readDisplayFacts(brightness, facts.controls);
}

}  // namespace vantle
