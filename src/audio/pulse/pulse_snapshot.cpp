#include "audio/pulse/pulse_snapshot.h"

#include <algorithm>
#include <utility>

namespace vantle::pulse {

const PulseSink* PulseSnapshot::sinkWithId(std::uint32_t deviceId) const {
    if (deviceId < kSinkIdBase || deviceId >= kSourceIdBase) {
        return nullptr;
    }
    return sinkWithIndex(deviceId - kSinkIdBase);
}

PulseSink* PulseSnapshot::sinkWithId(std::uint32_t deviceId) {
    return const_cast<PulseSink*>(std::as_const(*this).sinkWithId(deviceId));
}

const PulseSource* PulseSnapshot::sourceWithId(std::uint32_t deviceId) const {
    if (deviceId < kSourceIdBase) {
        return nullptr;
    }
    const auto found = std::find_if(sources.begin(), sources.end(), [&](const PulseSource& source) {
        return sourceDeviceId(source.index) == deviceId;
    });
    return found == sources.end() ? nullptr : &*found;
}

const PulseSink* PulseSnapshot::sinkWithIndex(std::uint32_t index) const {
    const auto found =
        std::find_if(sinks.begin(), sinks.end(), [&](const PulseSink& sink) { return sink.index == index; });
    return found == sinks.end() ? nullptr : &*found;
}

const PulseSink* PulseSnapshot::sinkWithName(const std::string& name) const {
    const auto found =
        std::find_if(sinks.begin(), sinks.end(), [&](const PulseSink& sink) { return sink.name == name; });
    return found == sinks.end() ? nullptr : &*found;
}

std::vector<std::uint32_t> PulseSnapshot::deviceIds() const {
    std::vector<std::uint32_t> ids;
    ids.reserve(sinks.size() + sources.size());
    for (const PulseSink& sink : sinks) {
        ids.push_back(sinkDeviceId(sink.index));
    }
    for (const PulseSource& source : sources) {
        ids.push_back(sourceDeviceId(source.index));
    }
    return ids;
}

bool PulseSnapshot::isCombined(const PulseSink& sink) const {
    // PulseAudio names the module in the driver; PipeWire's pulse server names itself there, so
    // the owning module's name is looked up instead.
    if (sink.driver.find("module-combine-sink") != std::string::npos) {
        return true;
    }
    if (sink.ownerModule && std::find(combiningModules.begin(), combiningModules.end(), *sink.ownerModule) !=
                                combiningModules.end()) {
        return true;
    }
    return sink.linkGroup.rfind(kCombiningLinkGroupPrefix, 0) == 0;
}

std::vector<std::uint32_t> PulseSnapshot::memberIds(const PulseSink& combined) const {
    // A combined sink has no list of members of its own to ask for; what it plays through right
    // now are the sinks that its streams play into: the streams of its module on either server,
    // and on PipeWire the streams that share its link group, which a combined sink made from
    // PipeWire's configuration has instead of a module. A member that went away has no stream.
    const auto feedsCombined = [&](const PulseSinkInput& input) {
        return (combined.ownerModule && input.ownerModule == combined.ownerModule) ||
               (!combined.linkGroup.empty() && input.linkGroup == combined.linkGroup);
    };
    std::vector<std::uint32_t> indices;
    for (const PulseSinkInput& input : sinkInputs) {
        if (feedsCombined(input) && input.sink != combined.index && sinkWithIndex(input.sink) != nullptr) {
            indices.push_back(input.sink);
        }
    }
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    std::vector<std::uint32_t> ids;
    ids.reserve(indices.size());
    for (const std::uint32_t index : indices) {
        ids.push_back(sinkDeviceId(index));
    }
    return ids;
}

}  // namespace vantle::pulse
