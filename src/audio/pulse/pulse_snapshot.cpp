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

std::vector<std::uint32_t> PulseSnapshot::memberIds(const PulseSink& combined) const {
    // A combined sink has no list of members of its own to ask for; what it plays through right
    // now are the sinks its module's streams play into. A member that went away has no stream.
    std::vector<std::uint32_t> indices;
    if (combined.ownerModule) {
        for (const PulseSinkInput& input : sinkInputs) {
            if (input.ownerModule == combined.ownerModule && input.sink != combined.index &&
                sinkWithIndex(input.sink) != nullptr) {
                indices.push_back(input.sink);
            }
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

bool isCombinedSink(const PulseSink& sink) {
    return sink.driver.find("module-combine-sink") != std::string::npos;
}

}  // namespace vantle::pulse
